// How a field is completed: terminated, filled, cut. Null values of any length, set by the test,
// show the three completion steps; bit and i4 to char show them behind a conversion; the bare
// writers show the descriptors' own.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using namespace std::string_literals;

constexpr uint32_t kTerminate = 1, kZero = 2, kBlank = 4, kRight = 8;

// Delivers `value` as the null value of the format's datatype into a buffer of `room` bytes.
Outcome deliver(const comn_datafmt& format, std::string_view value, int32_t room) {
  static const Context context;
  EXPECT_EQ(com_null_set(context.get(), format.datatype, value.data(),
                         static_cast<int32_t>(value.size())),
            CS_SUCCEED);
  return observe("", static_cast<size_t>(room), [&](const void*, void* out, int32_t* length) {
    return com_null_get(context.get(), &format, out, room, length);
  });
}

// The value in a buffer of `room` bytes, as far as it goes, not yet completed.
Outcome delivered(std::string_view value, int32_t room) {
  const auto size = static_cast<size_t>(room);
  const std::string bytes(value.substr(0, size));
  return {CS_SUCCEED, static_cast<int32_t>(bytes.size()), bytes + untouched(size - bytes.size())};
}

struct Row {
  int32_t capacity;
  uint32_t flags;
  Outcome expected;
};

// The buffer may be larger than the format says: a value that goes beyond it is cut there.
TEST(Completion, EveryLengthCapacityAndFlag) {
  const std::string value = "a\0b\0c\0"s;
  for (const int32_t datatype : {0, 1, 4, 21, 22, 34, 25, 29})
    for (const int32_t unit : {datatype == 25 || datatype == 29 ? 2 : 1})
      for (int32_t length = 0; length <= 6; length += unit)
        for (int32_t capacity = 0; capacity <= 10; ++capacity)
          for (const int32_t room : {capacity, 12})
            for (uint32_t flags = 0; flags < 8; ++flags) {
              const std::string start = value.substr(0, static_cast<size_t>(length));
              const Outcome done = delivered(start, room);
              EXPECT_EQ(deliver(format_of(datatype, capacity, flags), start, room),
                        complete(done, done.length, capacity, flags, unit))
                  << length << " in " << capacity << " of " << room << ", code " << datatype
                  << ", flags " << flags;
            }
}

TEST(Completion, OfBinaryOnlyFillsWithZeros) {
  for (const int32_t datatype : {2, 3, 5})
    for (const std::string_view value : {"", "a", "abc"})
      for (int32_t capacity = 0; capacity <= 6; ++capacity)
        for (uint32_t flags = 0; flags < 8; ++flags)
          EXPECT_EQ(deliver(format_of(datatype, capacity, flags), value, capacity),
                    complete(delivered(value, capacity), 0, capacity, flags & kZero))
              << value << " in " << capacity << ", code " << datatype << ", flags " << flags;
}

TEST(Completion, OfABit) {
  for (const int32_t datatype : {0, 2, 4, 21, 22, 34})
    for (int32_t capacity = 0; capacity <= 4; ++capacity)
      for (uint32_t flags = 0; flags < 8; ++flags) {
        const Outcome expected = complete(delivered("1", capacity), 1, capacity, flags);
        Outcome outcome =
            convert(comn_bittochar, format_of(11), "\x01", format_of(datatype, capacity, flags));
        if (capacity == 0) outcome.length = expected.length;  // of no use there
        EXPECT_EQ(outcome, expected) << capacity << ", code " << datatype << ", flags " << flags;
      }
}

TEST(Completion, OfANumberThatDoesNotFit) {
  const Row rows[] = {
      {6, kTerminate, {CS_CONV_OVERFLOW, 2, "*\0"s + untouched(4)}},
      {4, 0, {CS_CONV_OVERFLOW, 1, "*\0"s + untouched(2)}},
      {4, kBlank | kTerminate, {CS_CONV_OVERFLOW, 4, "*  \0"s}},
      {4, kZero | kBlank, {CS_CONV_OVERFLOW, 1, "*\0"s + untouched(2)}},
      {2, kTerminate, {CS_CONV_OVERFLOW, 2, "*\0"s}},
      {1, kTerminate, {CS_CONV_OVERFLOW, 1, untouched(1)}},
      {0, 0, {CS_CONV_OVERFLOW, 0, ""}},
  };
  for (const Row& row : rows)
    EXPECT_EQ(convert(comn_i4tochar, format_of(8), bytes_of(123456),
                      format_of(0, row.capacity, row.flags)),
              row.expected)
        << row.capacity << ", flags " << row.flags;
}

TEST(BareCompletion, Examples) {
  const Row rows[] = {
      {6, kBlank | kRight, {CS_SUCCEED, 6, "   -12"}},
      {6, kRight, {CS_SUCCEED, 3, "-12" + untouched(3)}},
      {6, kRight | kZero, {CS_SUCCEED, 6, "-12\0\0\0"s}},
      {6, kRight | kTerminate, {CS_CONV_BADFORMAT, 3, "-12" + untouched(3)}},
      {6, kTerminate | kBlank, {CS_SUCCEED, 6, "-12  \0"s}},
      {3, kTerminate, {CS_CONV_OVERFLOW, kNoLength, untouched(3)}},
  };
  for (const Row& row : rows)
    EXPECT_EQ(convert_bare(comnb_i4tochar, bare_context(row.flags), bytes_of(-12),
                           static_cast<size_t>(row.capacity)),
              row.expected)
        << row.capacity << ", flags " << row.flags;
}

// The completion of a descriptor that holds as much of `text` as goes into it.
Outcome complete_bare(const std::string& text, int32_t capacity, uint32_t flags) {
  Outcome field = delivered(text, capacity);
  const auto length = static_cast<int32_t>(text.size());
  const bool terminate = (flags & kTerminate) != 0, right = (flags & kRight) != 0;
  if (!right || length + (terminate ? 1 : 0) > capacity) {
    field = complete(field, length, capacity, flags);
  } else if (terminate) {
    field.code = CS_CONV_BADFORMAT;
  } else if ((flags & (kZero | kBlank)) == kBlank) {
    field = {CS_SUCCEED, capacity, std::string(static_cast<size_t>(capacity - length), ' ') + text};
  } else {
    field = complete(field, length, capacity, flags);
  }
  return field;
}

// A number that does not fit is not delivered at all, a bit is completed all the same.
TEST(BareCompletion, EveryLengthCapacityAndFlag) {
  const struct {
    comnb_conversion* routine;
    std::string value, text;
  } rows[] = {{comnb_bittochar, "\x01", "1"},
              {comnb_i1tochar, "\xFF", "255"},
              {comnb_i4tochar, bytes_of(-1234567), "-1234567"},
              {comnb_flt8tochar, bytes_of(0.5), ".5"}};
  for (const auto& [routine, value, text] : rows)
    for (size_t room = 0; room <= 11; ++room)
      for (uint32_t flags = 0; flags < 16; ++flags) {
        const bool fits = text.size() + (flags & kTerminate) <= room;
        const Outcome expected = fits || routine == comnb_bittochar
                                     ? complete_bare(text, static_cast<int32_t>(room), flags)
                                     : Outcome{CS_CONV_OVERFLOW, kNoLength, untouched(room)};
        EXPECT_EQ(convert_bare(routine, bare_context(flags), value, room), expected)
            << text << " in " << room << ", flags " << flags;
      }
}

}  // namespace
}  // namespace tvx::test
