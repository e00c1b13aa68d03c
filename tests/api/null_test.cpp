// Null values: the built-in ones, those a caller sets, and how both reach a destination, but for
// their completion. And the tables that relate the digits of an exact numeric to its bytes.
#include "tvxcomn/null.h"

#include <climits>
#include <tuple>
#include <utility>
#include <vector>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using namespace std::string_literals;

class Null : public testing::Test {
  const Context owner_ = open_context();

protected:
  comn_context* const context = owner_.get();
};

int32_t set(comn_context* context, int32_t code, const std::string& value) {
  return com_null_set(context, code, value.data(), static_cast<int32_t>(value.size()));
}

// The null value of a code as a destination of that many bytes receives it.
Outcome get(comn_context* context, int32_t code, int32_t room) {
  return null_value(context, format_of(code, room), room, room);
}

std::string zeros(size_t size) {
  return std::string(size, '\0');
}

TEST_F(Null, BuiltInAtFirstAndReinstalled) {
  const std::pair<std::vector<int32_t>, std::string> rows[] = {
      {{0, 1, 2, 3, 4, 5, 21, 22, 34}, ""},
      {{6, 11, 25, 29}, zeros(1)},
      {{7, 24, 31}, zeros(2)},
      {{8, 9, 23, 26, 27, 28, 32}, zeros(4)},
      {{10, 12, 13, 14, 15, 20, 30, 33, 35, 36}, zeros(8)},
      {{16, 17}, zeros(35)},  // with the invalid precision 0
      {{18, 19}, zeros(258)},
      {{37, 38, 39}, "\xF5\xFC\xFF\xFF" + zeros(44)}};
  for (const auto& [codes, value] : rows)
    for (const int32_t code : codes)
      for (const char* const other : {"as opened", "", "a", "longer than most of the others"}) {
        for (const int32_t room : {0, 1, 4, static_cast<int32_t>(value.size()), 300})
          EXPECT_EQ(get(context, code, room), delivered(value, room))
              << code << " before " << other;
        ASSERT_EQ(CS_SUCCEED, set(context, code, other));
        ASSERT_EQ(CS_SUCCEED, com_null_reinstall(context, code));
      }
}

TEST_F(Null, FixedSizesAreNotCompletedAndNumericsGetTheirHeader) {
  for (const int32_t code : {8, 9, 27, 32})
    for (uint32_t flags = 0; flags < 8; ++flags)
      EXPECT_EQ(null_value(context, format_of(code, 6, flags), 6, 6), delivered(zeros(4), 6));
  const auto numeric = [&](int32_t code, int32_t precision, int32_t scale, int32_t room) {
    comn_datafmt format = format_of(code, room, CS_FORMAT_TERMINATE);
    format.precision = precision;
    format.scale = scale;
    return null_value(context, format, room, room);
  };
  const std::tuple<int32_t, int32_t, std::string> rows[] = {{10, 2, "\x0A\2" + zeros(6)},
                                                            {1, 1, "\1\1" + zeros(2)},
                                                            {77, 76, "\x4D\x4C" + zeros(33)},
                                                            {78, 5, "\x4E\5" + zeros(33)},
                                                            {-1, 5, "\xFF\5" + zeros(33)}};
  for (const auto& [precision, scale, value] : rows)
    for (const int32_t code : {TVX_TYPE_NUM, TVX_TYPE_NUM17})
      for (const int32_t room : {0, 1, 2, 3, 8, 35, 300})
        EXPECT_EQ(numeric(code, precision, scale, room), delivered(value, room))
            << precision << " in " << room;
  ASSERT_EQ(CS_SUCCEED, set(context, TVX_TYPE_NUM, "abc"));  // the length is the precision's
  EXPECT_EQ(numeric(TVX_TYPE_NUM, 10, 2, 9), delivered("\x0A\2c" + zeros(5), 9));
}

TEST_F(Null, SetCopiesTheValueAndKeepsAListOfTheCallersCodes) {
  std::string value = "old value";
  for (const int32_t code : {8, 45, INT_MAX}) ASSERT_EQ(CS_SUCCEED, set(context, code, value));
  value.assign(9, 'x');
  EXPECT_EQ(get(context, 8, 12), delivered("old value", 12));
  EXPECT_EQ(get(context, 45, 12), delivered("old value\0"s, 12));
  EXPECT_EQ(get(context, 9, 12), delivered(zeros(4), 12)) << "another datatype";

  for (const int32_t code : {8, INT_MAX}) ASSERT_EQ(CS_SUCCEED, set(context, code, ""));
  ASSERT_EQ(CS_SUCCEED, set(context, 40, "forty"));
  ASSERT_EQ(CS_SUCCEED, set(context, 45, "abc"));
  EXPECT_EQ(get(context, 8, 12), delivered("", 12));
  for (const int32_t room : {3, 0}) EXPECT_EQ(get(context, INT_MAX, room), delivered("\0"s, room));
  for (const int32_t room : {9, 4, 3}) EXPECT_EQ(get(context, 45, room), delivered("abc\0"s, room));
  EXPECT_EQ(get(context, 45, 2), (Outcome{CS_CONV_OVERFLOW, 2, "ab"}));
  EXPECT_EQ(get(context, 45, 0), (Outcome{CS_CONV_OVERFLOW, 0, ""}));

  // Taken out of the middle, not there at all, at the end, and the last one.
  for (const int32_t code : {INT_MAX, 99, 45, 40}) {
    EXPECT_EQ(get(context, 40, 7), delivered("forty\0"s, 7)) << "before " << code;
    EXPECT_EQ(get(context, 45, 5), delivered(code == 40 ? "" : "abc\0"s, 5)) << "before " << code;
    EXPECT_EQ(CS_SUCCEED, com_null_reinstall(context, code));
    EXPECT_EQ(get(context, code, 5), delivered("", 5)) << code;
  }
}

TEST_F(Null, WithoutMemoryTheCodeHasNoValue) {
  using Change = int32_t(comn_context*, int32_t);
  Change* const replace = [](comn_context* c, int32_t code) { return set(c, code, "a long one"); };
  // clang-format off
  const struct { int32_t code; const char* before; Change* change; } rows[] = {  // null: as it was
      {8, nullptr, replace}, {4, "t", replace}, {45, nullptr, replace}, {45, "ab", replace},
      {10, "", com_null_reinstall}, {16, "s", com_null_reinstall}};
  // clang-format on
  for (const auto& row : rows)
    fail_each_allocation([&](long n) {
      const Context owner = open_context();
      comn_context* const fresh = owner.get();
      set(fresh, 47, "other");
      if (row.before != nullptr) set(fresh, row.code, row.before);
      const FailingHeap heap(n);
      const int32_t result = row.change(fresh, row.code);
      if (result == CS_MEM_ERROR) {
        // An entry of the list may stay, with nothing in it but the zero byte that follows.
        EXPECT_LE(get(fresh, row.code, 8).length, row.code >= 40 ? 1 : 0) << row.code;
        EXPECT_EQ(CS_SUCCEED, row.change(fresh, row.code)) << "once there is memory";
      }
      EXPECT_EQ(get(fresh, row.code, 8).length, 8) << row.code;
      EXPECT_EQ(get(fresh, 47, 8), delivered("other\0"s, 8));
      return result;
    });
}

TEST_F(Null, AsASourceGivesTheValueOfTheDestination) {
  ASSERT_EQ(CS_SUCCEED, set(shared_context(), TVX_TYPE_I4, "\xFF\xFE\xFD\xFC"));
  ASSERT_EQ(CS_SUCCEED, set(shared_context(), TVX_TYPE_TEXT, "NULL"));
  for (int32_t code = 0; code <= 36; ++code)
    for (const int32_t maxlength : {0, 1, 3, 10}) {
      const comn_datafmt to = format_of(code, maxlength, CS_FORMAT_TERMINATE);
      const int32_t storage = comn_typelen(code, maxlength), room = std::max(storage, maxlength);
      // A unichar destination may be smaller than the storage size, that of one unit.
      const int32_t most = code == TVX_TYPE_UNICHAR ? std::min(storage, maxlength) : storage;
      Outcome expected = null_value(shared_context(), to, room, most);
      if (code == TVX_TYPE_NULL23) expected = {CS_SUCCEED, kNoLength, delivered("", room).bytes};
      EXPECT_EQ(convert(format_of(TVX_TYPE_NULL23), "", to), expected) << code << ", " << maxlength;
    }
}

}  // namespace
}  // namespace tvx::test
