// Null values: the built-in ones, those a caller sets, and how they are delivered into a
// destination; and the tables that relate the digits of an exact numeric to its bytes.
//
// Destinations are filled with dots before a call and end at an inaccessible page. They are
// compared whole: "." is a byte that was not written, "0" a zero byte.
#include "tvxcomn/null.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <climits>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support/failing_heap.hpp"
#include "support/guarded_buffer.hpp"
#include "tvxcomn/context.h"
#include "tvxcomn/numeric.h"

namespace {

using namespace std::string_literals;
using testing::KilledBySignal;
using tvx::test::FailingHeap;
using tvx::test::GuardedBuffer;
using tvx::test::live_blocks;

const char* const kAssertion = "assertion failed, file '.+' line [0-9]+";

// A context with nothing but null values.
struct Context : comn_context {
  Context() : comn_context{} { EXPECT_EQ(CS_SUCCEED, com_null_init(this)); }
  ~Context() {
    EXPECT_EQ(CS_SUCCEED, com_null_free(this));
    EXPECT_EQ(0, null_count);
  }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  int32_t set(int32_t code, const std::string& value) {
    return com_null_set(this, code, value.data(), static_cast<int32_t>(value.size()));
  }
};

using Delivery = std::tuple<int32_t, int32_t, std::string>;  // result, length, destination

Delivery get(Context& context, int32_t code, int32_t capacity, uint32_t flags = 0,
             int32_t precision = 0, int32_t scale = 0) {
  comn_datafmt format{};
  format.datatype = code;
  format.format = flags;
  format.maxlength = capacity;
  format.precision = precision;
  format.scale = scale;
  GuardedBuffer buffer(static_cast<size_t>(capacity), '.');
  int32_t length = -1;
  const int32_t result = com_null_get(&context, &format, buffer.data(), capacity, &length);
  std::string bytes(buffer.data(), buffer.data() + buffer.size());
  std::replace(bytes.begin(), bytes.end(), '\0', '0');
  return {result, length, bytes};
}

// The value and nothing else, with success.
Delivery delivered(const std::string& value, size_t capacity) {
  return {CS_SUCCEED, static_cast<int32_t>(value.size()),
          value + std::string(capacity - value.size(), '.')};
}

// ---- Built-in values ---------------------------------------------------------------------------

void expect_default(Context& context, int32_t code, const std::string& value) {
  for (const size_t capacity : {size_t{0}, size_t{1}, size_t{4}, value.size(), size_t{300}})
    EXPECT_EQ(delivered(value.substr(0, capacity), capacity),
              get(context, code, static_cast<int32_t>(capacity)))
        << "datatype " << code << " capacity " << capacity;
}

TEST(NullDefaults, EveryDatatypeAtFirstAndReinstalled) {
  const std::pair<std::vector<int32_t>, std::string> rows[] = {
      {{0, 1, 2, 3, 4, 5, 21, 22, 34}, ""},
      {{6, 11, 25, 29}, std::string(1, '0')},
      {{7, 24, 31}, std::string(2, '0')},
      {{8, 9, 23, 26, 27, 28, 32}, std::string(4, '0')},
      {{10, 12, 13, 14, 15, 20, 30, 33, 35, 36}, std::string(8, '0')},
      {{16, 17}, std::string(35, '0')},  // with the invalid precision 0
      {{18, 19}, std::string(258, '0')},
      {{37, 38, 39}, "\xF5\xFC\xFF\xFF" + std::string(44, '0')}};
  Context context;
  EXPECT_EQ(40, context.null_count);
  for (const auto& [codes, value] : rows) {
    for (const int32_t code : codes) {
      expect_default(context, code, value);
      for (const auto& other : {""s, "a"s, std::string(1'000, 'x')}) {
        ASSERT_EQ(CS_SUCCEED, context.set(code, other));
        ASSERT_EQ(CS_SUCCEED, com_null_reinstall(&context, code));
        expect_default(context, code, value);
      }
    }
  }
}

// ---- Completion --------------------------------------------------------------------------------

constexpr uint32_t T = CS_FORMAT_TERMINATE, Z = CS_FORMAT_ZEROFILL, B = CS_FORMAT_BLANKFILL;
constexpr int32_t kDone = CS_SUCCEED, kOver = CS_CONV_OVERFLOW, kBad = CS_CONV_BADFORMAT;

struct Completed {
  uint32_t flags;
  int32_t capacity;
  int32_t result;
  int32_t length;
  const char* bytes;
};

void expect_completed(Context& context, const std::vector<int32_t>& codes,
                      std::span<const Completed> rows) {
  for (const int32_t code : codes)
    for (const auto& [flags, capacity, result, length, bytes] : rows)
      EXPECT_EQ(Delivery(result, length, bytes), get(context, code, capacity, flags))
          << "datatype " << code << " flags " << flags << " capacity " << capacity;
}

TEST(NullCompletion, Text) {
  Context context;
  const std::vector<int32_t> codes = {0, 1, 4, 21, 22, 34};
  const Completed built_in[] = {
      {T, 0, kOver, 0, ""},      {B, 0, kDone, 0, ""},          {B | Z, 0, kBad, 0, ""},
      {T, 1, kDone, 1, "0"},     {T | B, 1, kDone, 1, "0"},     {0, 5, kDone, 0, "....."},
      {T, 5, kDone, 1, "0...."}, {B, 5, kDone, 5, "     "},     {T | B, 5, kDone, 5, "    0"},
      {Z, 5, kDone, 5, "00000"}, {T | Z, 5, kDone, 5, "00000"}, {B | Z, 5, kBad, 0, "....."}};
  expect_completed(context, codes, built_in);
  // The value is cut to the capacity first, so that the completion step sees one that fits.
  for (const int32_t code : codes) ASSERT_EQ(CS_SUCCEED, context.set(code, "NULL"));
  const Completed text[] = {
      {0, 3, kDone, 3, "NUL"},   {B, 3, kDone, 3, "NUL"},     {T, 3, kOver, 3, "NU0"},
      {T, 4, kOver, 4, "NUL0"},  {B | Z, 4, kBad, 4, "NULL"}, {T | B | Z, 4, kOver, 4, "NUL0"},
      {T, 5, kDone, 5, "NULL0"}, {0, 6, kDone, 4, "NULL.."},  {B, 6, kDone, 6, "NULL  "}};
  expect_completed(context, codes, text);
}

TEST(NullCompletion, Binary) {
  Context context;
  const std::vector<int32_t> codes = {2, 3, 5};
  const Completed built_in[] = {
      {T, 0, kDone, 0, ""}, {T, 3, kDone, 0, "..."}, {T | B | Z, 3, kDone, 3, "000"}};
  expect_completed(context, codes, built_in);
  for (const int32_t code : codes) ASSERT_EQ(CS_SUCCEED, context.set(code, "ab"));
  const Completed bytes[] = {
      {T, 1, kDone, 1, "a"}, {T | B, 4, kDone, 2, "ab.."}, {Z, 4, kDone, 4, "ab00"}};
  expect_completed(context, codes, bytes);
}

TEST(NullCompletion, Unicode) {
  Context context;
  const std::vector<int32_t> codes = {25, 29};
  const Completed built_in[] = {{T, 0, kOver, 0, ""},        {T, 2, kOver, 1, "00"},
                                {T, 3, kDone, 3, "000"},     {B, 6, kDone, 6, "0 0 0."},
                                {B, 7, kDone, 7, "0 0 0 0"}, {T | B, 7, kDone, 7, "0 0 000"},
                                {Z, 6, kDone, 6, "000000"},  {B | Z, 6, kBad, 1, "0....."}};
  expect_completed(context, codes, built_in);
  for (const int32_t code : codes) {
    EXPECT_EQ(kOver, std::get<0>(get(context, code, 1, T)));
    ASSERT_EQ(CS_SUCCEED, context.set(code, "a\0b\0"s));
  }
  const Completed units[] = {{0, 4, kDone, 4, "a0b0"},         {T, 4, kOver, 4, "a000"},
                             {T, 5, kOver, 4, "a000."},        {T, 6, kDone, 6, "a0b000"},
                             {0, 7, kDone, 4, "a0b0..."},      {B, 8, kDone, 8, "a0b0 0 0"},
                             {T | B, 8, kDone, 8, "a0b0 000"}, {T | Z, 8, kDone, 8, "a0b00000"}};
  expect_completed(context, codes, units);
}

TEST(NullCompletion, NoneForFixedSizes) {
  Context context;
  const Completed rows[] = {
      {T, 4, kDone, 4, "0000"}, {B | Z, 6, kDone, 4, "0000.."}, {T | B, 3, kDone, 3, "000"}};
  expect_completed(context, {8, 9, 27, 32}, rows);
  const struct {
    int32_t precision;
    int32_t scale;
    size_t capacity;
    std::string header;
    size_t zeros;
  } numerics[] = {
      {10, 2, 35, "\x0A\x02", 6},  {10, 2, 8, "\x0A\x02", 6},     {10, 2, 7, "\x0A\x02", 5},
      {10, 2, 2, "\x0A\x02", 0},   {10, 2, 1, "\x0A", 0},         {10, 2, 0, "", 0},
      {1, 1, 35, "\x01\x01", 2},   {77, 76, 300, "\x4D\x4C", 33}, {78, 5, 35, "\x4E\x05", 33},
      {-1, 5, 36, "\xFF\x05", 33}, {78, 5, 4, "\x4E\x05", 2}};
  for (const int32_t code : {TVX_TYPE_NUM, TVX_TYPE_NUM17})
    for (const auto& [precision, scale, capacity, header, zeros] : numerics)
      EXPECT_EQ(delivered(header + std::string(zeros, '0'), capacity),
                get(context, code, static_cast<int32_t>(capacity), T | B, precision, scale))
          << "precision " << precision << " capacity " << capacity;
  ASSERT_EQ(CS_SUCCEED, context.set(TVX_TYPE_NUM, "abc"));
  for (const int32_t capacity : {8, 6}) {  // the precision's length, whatever is set
    const auto [result, length, bytes] = get(context, TVX_TYPE_NUM, capacity, 0, 10, 2);
    EXPECT_EQ(capacity, length);
    EXPECT_EQ("\x0A\x02"s + "c", bytes.substr(0, 3));
  }
}

// ---- Values that the caller sets ---------------------------------------------------------------

TEST(NullSet, CopiesTheValueAndKeepsAListOfTheCallersCodes) {
  Context context;
  std::string value = "old value";
  ASSERT_EQ(CS_SUCCEED, context.set(8, value));
  ASSERT_EQ(CS_SUCCEED, context.set(45, value));
  ASSERT_EQ(CS_SUCCEED, context.set(INT_MAX, value));
  value.assign(9, 'x');
  EXPECT_EQ(delivered("old value", 12), get(context, 8, 12));
  EXPECT_EQ(delivered("old value0", 12), get(context, 45, 12));
  EXPECT_EQ(delivered("0000", 12), get(context, 9, 12)) << "another datatype";
  ASSERT_EQ(CS_SUCCEED, context.set(8, ""));
  EXPECT_EQ(delivered("", 12), get(context, 8, 12));

  ASSERT_EQ(CS_SUCCEED, context.set(40, "forty"));
  ASSERT_EQ(CS_SUCCEED, context.set(INT_MAX, ""));
  ASSERT_EQ(CS_SUCCEED, context.set(45, "abc"));
  const Completed rows[] = {{0, 10, kDone, 4, "abc0......"}, {B, 10, kDone, 4, "abc0......"},
                            {0, 4, kDone, 4, "abc0"},        {T, 3, kDone, 3, "abc"},
                            {0, 2, kOver, 2, "ab"},          {0, 0, kOver, 0, ""}};
  expect_completed(context, {45}, rows);
  EXPECT_EQ(delivered("forty0", 7), get(context, 40, 7));
  EXPECT_EQ(delivered("0", 3), get(context, INT_MAX, 3));
  EXPECT_EQ(delivered("", 0), get(context, INT_MAX, 0));

  // Taken out of the middle, not there at all, at the end, and the last one.
  for (const int32_t code : {INT_MAX, 99, 45, 40}) {
    EXPECT_EQ(delivered("forty0", 7), get(context, 40, 7)) << "before " << code;
    EXPECT_EQ(delivered(code == 40 ? "" : "abc0", 5), get(context, 45, 5)) << "before " << code;
    EXPECT_EQ(CS_SUCCEED, com_null_reinstall(&context, code));
    EXPECT_EQ(delivered("", 5), get(context, code, 5)) << code;
  }
  EXPECT_EQ(CS_SUCCEED, context.set(45, "new"));
  EXPECT_EQ(delivered("new0", 5), get(context, 45, 5));
}

TEST(NullOutOfMemory, InitLeavesNothing) {
  const long before = live_blocks();
  long nth = 1;
  for (int32_t result = CS_MEM_ERROR; result == CS_MEM_ERROR; ++nth) {
    comn_context context{};
    const FailingHeap heap(nth);
    result = com_null_init(&context);
    EXPECT_EQ(result == CS_MEM_ERROR, before == live_blocks()) << "allocation " << nth;
    EXPECT_EQ(CS_SUCCEED, com_null_free(&context));
    EXPECT_EQ(before, live_blocks());
  }
  EXPECT_GT(nth, 2);
}

TEST(NullOutOfMemory, ChangeLeavesTheCodeWithoutAValue) {
  const long before = live_blocks();
  const auto reinstall = [](Context& c, int32_t code) { return com_null_reinstall(&c, code); };
  const auto set = [](Context& c, int32_t code) { return c.set(code, "longer than before"); };
  const struct {
    int32_t code;
    const char* before;  // null: as it was
    int32_t (*change)(Context&, int32_t);
  } rows[] = {{8, nullptr, set},  {0, nullptr, set},   {4, "t", set},       {45, nullptr, set},
              {45, "short", set}, {8, "s", reinstall}, {10, "", reinstall}, {16, "s", reinstall}};
  for (const auto& [code, old_value, change] : rows) {
    long nth = 1;
    for (int32_t result = CS_MEM_ERROR; result == CS_MEM_ERROR; ++nth) {
      Context context;
      if (old_value != nullptr) context.set(code, old_value);
      ASSERT_EQ(CS_SUCCEED, context.set(46, "other"));
      {
        const FailingHeap heap(nth);
        result = change(context, code);
      }
      if (result == CS_MEM_ERROR) {
        const Delivery none = get(context, code, 8);
        // An entry of the list may stay, with nothing in it but the zero byte that follows.
        const bool empty_entry = code >= 40 && std::get<1>(none) == 1;
        EXPECT_EQ(delivered(empty_entry ? "0" : "", 8), none) << code << ", allocation " << nth;
        EXPECT_EQ(CS_SUCCEED, change(context, code)) << "once there is memory";
      }
      EXPECT_NE(0, std::get<1>(get(context, code, 8))) << code;
      EXPECT_EQ(delivered("other0", 8), get(context, 46, 8));
    }
    EXPECT_GT(nth, 2) << code << " allocates";
    EXPECT_EQ(before, live_blocks()) << code;
  }
}

TEST(NullOutOfMemory, NoMemoryNeeded) {
  Context context;
  const FailingHeap heap(1);
  EXPECT_EQ(CS_SUCCEED, context.set(8, "")) << "an empty value";
  EXPECT_EQ(CS_SUCCEED, com_null_reinstall(&context, 7)) << "one that is not longer";
  EXPECT_EQ(CS_SUCCEED, com_null_reinstall(&context, 45)) << "one that goes";
  EXPECT_EQ(0, heap.calls());
}

TEST(NullUsage, BrokenIsFatal) {
  static Context context;
  static comn_context unset{};
  static char out[8];
  static int32_t length;
  static comn_datafmt i4{}, below{};
  i4.datatype = 8;
  below.datatype = -1;
  void (*const null_pointers[])() = {[] { com_null_init(nullptr); },
                                     [] { com_null_free(nullptr); },
                                     [] { com_null_reinstall(nullptr, 8); },
                                     [] { com_null_set(&context, 8, nullptr, 1); },
                                     [] { com_null_get(&context, nullptr, out, 4, &length); },
                                     [] { com_null_get(&context, &i4, nullptr, 4, &length); }};
  void (*const assertions[])() = {[] { com_null_get(&context, &below, out, 4, &length); },
                                  [] { com_null_get(&context, &i4, out, -1, &length); },
                                  [] { com_null_get(&unset, &i4, out, 4, &length); },
                                  [] { com_null_set(&context, -1, out, 1); },
                                  [] { com_null_set(&context, 45, out, -9); },
                                  [] { com_null_reinstall(&context, -1); }};
  for (const auto& call : null_pointers)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), "Invalid NULL pointer , file '.+' line [0-9]+")
        << &call - null_pointers;
  for (const auto& call : assertions)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), kAssertion) << &call - assertions;
}

// ---- Digits and bytes of an exact numeric ------------------------------------------------------

// Bytes that hold 10^digits - 1, by long multiplication.
int32_t bytes_of_nines(int32_t digits) {
  std::vector<unsigned> number;  // base 256, lowest first
  for (int32_t i = 0; i < digits; ++i) {
    unsigned carry = 9;
    for (unsigned& byte : number) {
      carry += byte * 10;
      byte = carry % 256;
      carry /= 256;
    }
    if (carry != 0) number.push_back(carry);
  }
  return static_cast<int32_t>(number.size());
}

TEST(NumericTables, DigitsAndBytes) {
  EXPECT_EQ(2, comb_get_Prec_To_Len(0));
  for (int32_t precision = 1; precision <= 77; ++precision)
    EXPECT_EQ(1 + bytes_of_nines(precision), comb_get_Prec_To_Len(precision)) << precision;
  for (int32_t index = 0; index < 35; ++index) {
    int32_t precision = 0;
    while (bytes_of_nines(precision + 1) <= index + 1) ++precision;
    EXPECT_EQ(index < 32 ? precision : 255, comb_get_Len_To_Prec(index)) << index;
  }
  for (const int32_t outside : {-1, 78}) {
    EXPECT_EXIT(comb_get_Prec_To_Len(outside), KilledBySignal(SIGABRT), kAssertion);
    EXPECT_EXIT(comb_get_Len_To_Prec(outside), KilledBySignal(SIGABRT), kAssertion);
  }
}

}  // namespace
