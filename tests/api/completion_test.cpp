// How a field is completed: terminated, filled, cut. Null values of any length show the completion
// steps alone, the writers of numbers show them behind a conversion in both layers.
#include "api/scalar_reference.hpp"
#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using namespace reference;
using namespace std::string_literals;
using tvx::test::convert;

constexpr uint32_t T = CS_FORMAT_TERMINATE, Z = CS_FORMAT_ZEROFILL, B = CS_FORMAT_BLANKFILL;
constexpr uint32_t R = COMNB_RIGHTALIGN;
constexpr int32_t kDone = CS_SUCCEED, kOver = CS_CONV_OVERFLOW, kBad = CS_CONV_BADFORMAT;

int32_t size_of(std::string_view text) {
  return static_cast<int32_t>(text.size());
}

bool fits(std::string_view text, int32_t capacity, uint32_t flags) {
  return size_of(text) + ((flags & T) != 0 ? 1 : 0) <= capacity;
}

// A number in a char destination: "*" when it does not fit.
Outcome number_field(std::string_view text, int32_t capacity, uint32_t flags) {
  Outcome field = delivered(text, capacity);
  if (fits(text, capacity, flags)) return complete(field, size_of(text), capacity, flags);
  if (capacity < 2) return {kOver, field.length, delivered("", capacity).bytes};
  field = complete({kDone, 1, delivered("*\0"s, capacity).bytes}, 1, capacity, flags);
  return {kOver, field.length, field.bytes};
}

// A text in the destination of a descriptor.
Outcome bare_field(const std::string& text, int32_t capacity, uint32_t flags) {
  const Outcome field = delivered(text, capacity);
  if ((flags & R) != 0 && fits(text, capacity, flags)) {
    if ((flags & T) != 0) return {kBad, field.length, field.bytes};
    const auto blanks = static_cast<size_t>(capacity - size_of(text));
    if ((flags & (Z | B)) == B) return delivered(std::string(blanks, ' ') + text, capacity);
  }
  return complete(field, size_of(text), capacity, flags);
}

// The reference itself, by examples worked by hand.
TEST(Completion, ReferenceSteps) {
  const Outcome rows[][2] = {
      {complete(delivered("NULL", 3), 3, 3, T), {kOver, 3, "NU\0"s}},
      {complete(delivered("NULL", 4), 4, 4, B | Z), {kBad, 4, "NULL"}},
      {complete(delivered("NULL", 6), 4, 6, B | T), {kDone, 6, "NULL \0"s}},
      {complete(delivered("a\0b\0"s, 5), 4, 5, T, 2), {kOver, 4, "a\0\0\0\xA5"s}},
      {complete(delivered("a\0b\0"s, 6), 4, 6, T, 2), {kDone, 6, "a\0b\0\0\0"s}},
      {complete(delivered("a\0"s, 7), 2, 7, B, 2), {kDone, 7, "a\0 \0 \0\xA5"s}},
      {number_field("123456", 6, T), {kOver, 2, "*\0"s + untouched(4)}},
      {number_field("123456", 4, B | T), {kOver, 4, "*  \0"s}},
      {number_field("123456", 1, T), {kOver, 1, untouched(1)}},
      {bare_field("-12", 6, B | R), {kDone, 6, "   -12"}},
      {bare_field("-12", 6, T | R), {kBad, 3, "-12" + untouched(3)}},
  };
  for (const auto& [actual, expected] : rows) EXPECT_EQ(actual, expected);
}

// The buffer may be larger than the format says: a value that goes beyond it is cut there.
TEST(Completion, NullValuesOfEveryLength) {
  const Context context = open_context();
  for (const int32_t code : {0, 1, 4, 21, 22, 34, 25, 29, 2, 3, 5})
    for (size_t length = 0; length <= 6; ++length) {
      const std::string value = "a\0b\0c\0"s.substr(0, length);
      com_null_set(context.get(), code, value.data(), static_cast<int32_t>(length));
      const bool binary = code == 2 || code == 3 || code == 5;  // only filled with zeros
      const bool unicode = code == 25 || code == 29;
      for (int32_t capacity = 0; capacity <= 10; ++capacity)
        for (uint32_t flags = 0; flags < 8; ++flags)
          for (const int32_t room : {capacity, binary ? capacity : 12}) {
            const Outcome field = delivered(value, room);
            EXPECT_EQ(null_value(context.get(), format_of(code, capacity, flags), room, room),
                      binary ? complete(field, 0, capacity, flags & Z)
                             : complete(field, field.length, capacity, flags, unicode ? 2 : 1))
                << length << " in " << capacity << ", code " << code << ", flags " << flags;
          }
    }
}

// What holds neither a point nor an exponent gets its ".0".
TEST(Completion, NumbersAsText) {
  // clang-format off
  const struct { Kind source; Real value; std::string text; } rows[] = {
      {kBit, 1, "1"}, {kI1, 255, "255"}, {kI2, -32768, "-32768"}, {kI4, 0, "0"},
      {kI4, -2147483648, "-2147483648"}, {kI8, -0x1p63L, "-9223372036854775808"},
      {kUi2, 65535, "65535"}, {kUi4, 4294967295, "4294967295"}, {kI8, 0x1p32L, "4294967296"},
      {kUi8, 18446744073709551615.0L, "18446744073709551615"}, {kFlt8, -0.0L, "0.0"},
      {kFlt8, 0.1, ".10000000000000001"}, {kFlt8, -0.5, "-0.5"}, {kFlt8, 2, "2.0"},
      {kFlt8, 1e22L, "1e+22"}, {kFlt8, 1e16L, "10000000000000000.0"},
      {kFlt4, 0.1f, ".10000000149011612"}, {kFlt8, -DBL_MAX, "-1.7976931348623157e+308"},
      {kFlt4, -kInfinity, "-inf.0"}, {kFlt8, kNan, "nan.0"},
  };
  // clang-format on
  for (const auto& [kind, number, text] : rows) {
    const comn_datafmt from = format_of(type(kind).code);
    const std::string value = encode(type(kind), number), bare = "comnb_"s + type(kind).name;
    comn_conversion* const to_char = com_conv_func(shared_context(), from.datatype, 0);
    auto* const bare_to_char = exported<comnb_conversion>(bare + "tochar");
    auto* const bare_to_varchar = exported<comnb_conversion>(bare + "tovarchar");
    for (int32_t capacity = 0; capacity <= size_of(text) + 3; ++capacity)
      for (uint32_t flags = 0; flags < 16; ++flags) {
        SCOPED_TRACE(text + " in " + std::to_string(capacity) + ", " + std::to_string(flags));
        const auto room = static_cast<size_t>(capacity);
        const Outcome nothing{kOver, kNoLength, untouched(room)};
        // A bit is cut like any text; bare, a number that does not fit is not delivered at all.
        for (const int32_t code : {0, 2, 4, 21, 22, 34})
          EXPECT_EQ(convert(to_char, from, value, format_of(code, capacity, flags)),
                    kind == kBit ? complete(delivered(text, capacity), 1, capacity, flags)
                                 : number_field(text, capacity, flags));
        const comnb_context context = bare_context(flags);
        EXPECT_EQ(convert_bare(bare_to_char, context, value, room),
                  kind == kBit || fits(text, capacity, flags) ? bare_field(text, capacity, flags)
                                                              : nothing);
        EXPECT_EQ(convert_bare(bare_to_varchar, context, value, room),
                  fits(text, capacity, 0) ? delivered(text, capacity) : nothing);
      }
    if (kind == kBit) continue;
    Outcome record = convert(from, value, format_of(18, 0, B));
    record.bytes.resize(2 + text.size() + 1);  // with the terminator, whatever the flags
    EXPECT_EQ(record, (Outcome{kDone, 258, varchar_record(text).substr(0, text.size() + 3)}));
  }
}

}  // namespace
}  // namespace tvx::test
