// Dates and times from text through the interface: both layers, their codes and lengths, the
// exported parsers, and what is said of dates without a locale.
#include "tvxcomn/dateparse.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <string>
#include <string_view>

#include "support/conversion.hpp"
#include "support/failing_heap.hpp"
#include "support/multibyte_record.hpp"

namespace tvx::test {
namespace {

using tvx::test::convert;

constexpr int32_t kOver = CS_CONV_OVERFLOW, kSyntax = CS_CONV_SYNTAX;
constexpr int32_t kDay = 37'621;                     // 2003-01-02
constexpr uint32_t kTicks = (10 * 3600 + 90) * 300;  // 10:01:30
constexpr uint64_t kBigTime = kTicks / 300 * 1'000'000ull;
constexpr uint64_t kBigDay = (366 + 693'595 + uint64_t{kDay}) * 86'400'000'000;
constexpr const char* kText = "2003-01-02 10:01:30.000499";

// The destinations, the exported routines that read them (null: none), and what they make of the
// text above.
const struct Row {
  int32_t code;
  comn_conversion *from_char, *from_varchar;
  comnb_conversion *bare_char, *bare_varchar;
  std::string value;
} kRows[] = {
    {12, comn_chartodatetime, comn_varchartodatetime, comnb_chartodatetime, comnb_varchartodatetime,
     bytes_of(comn_datetime{kDay, kTicks})},
    {13, comn_chartodate4, comn_varchartodate4, comnb_chartodate4, comnb_varchartodate4,
     bytes_of(comn_datetime4{kDay, 602})},
    {27, comn_chartodatea, comn_varchartodatea, comnb_chartodatea, nullptr, bytes_of(kDay)},
    {28, comn_chartotimea, comn_varchartotimea, comnb_chartotimea, nullptr, bytes_of(kTicks)},
    {35, comn_chartodatetime, comn_varchartodatetime, comnb_chartobigdatetime, nullptr,
     bytes_of(kBigDay + kBigTime + 499)},
    {36, comn_chartotimea, comn_varchartotimea, comnb_chartobigtime, nullptr,
     bytes_of(kBigTime + 499)}};

// Converts in both layers and from all kinds of text, which must do the same.
Outcome from_text(const Row& row, std::string_view text, const comnb_context& bare = {}) {
  const auto length = static_cast<int32_t>(text.size());
  const Outcome outcome = convert_bare(row.bare_char, bare, text, row.value.size());
  if (row.bare_varchar != nullptr) {
    EXPECT_EQ(outcome, convert_bare(row.bare_varchar, bare, text, row.value.size()));
  }
  if (length == 0 || bare.attributes != nullptr) return outcome;
  for (const int32_t code : {0, 2, 4, 21, 34})
    EXPECT_EQ(outcome, convert(row.from_char, format_of(code, length), text, format_of(row.code)));
  EXPECT_EQ(outcome,
            convert(row.from_varchar, format_of(18), varchar_record(text), format_of(row.code)));
  return outcome;
}

TEST(DateParse, Conversions) {
  const MultibyteRecord record;
  shared_context();
  const FailingHeap heap(0);
  for (const Row& row : kRows) {
    const std::string kept = untouched(row.value.size());
    const Outcome read{CS_SUCCEED, static_cast<int32_t>(row.value.size()), row.value};
    EXPECT_EQ(read, from_text(row, kText));
    EXPECT_EQ(read,
              from_text(row, MultibyteRecord::full_width(kText), bare_context(0, record.get())));
    // Built-in rules, whatever the bare context has for other conversions.
    comnb_context other{};
    const char* const no_names[12] = {};
    other.flags = 15, other.date_format = 3, other.months = no_names;
    EXPECT_EQ(read,
              convert_bare(row.bare_char, other, "Jan 2, 2003 10:01:30.000499", row.value.size()));
    EXPECT_EQ((Outcome{kSyntax, 0, kept}), from_text(row, "Januar 2 2003"));
    EXPECT_EQ((Outcome{kOver, kNoLength, kept}), from_text(row, "2003-01-02 24:00"));
    EXPECT_EQ((Outcome{kOver, kNoLength, kept}), from_text(row, "2003-01-02 0PM"));
    EXPECT_EQ(CS_SUCCEED, from_text(row, "").code);
    const int32_t before_1753 = row.code == 12 || row.code == 13 ? kOver : CS_SUCCEED;
    EXPECT_EQ(before_1753, from_text(row, "17521231").code);
  }
  EXPECT_EQ(0, heap.calls());
}

TEST(DateParse, Parsers) {
  const char* const names[] = {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"};
  const std::string_view text = "3 b 2003 10:01:30.0005";
  const auto length = static_cast<int32_t>(text.size());
  comn_datetime datetime{7, 7};
  int32_t number = 7, lost = 7;
  EXPECT_EQ(
      0, com__datefromchar_mb(text.data(), length, 0, 1, names, names, nullptr, &datetime, &lost));
  EXPECT_EQ(bytes_of(comn_datetime{kDay + 32, kTicks}), bytes_of(datetime));
  EXPECT_EQ(1, lost);
  EXPECT_EQ(0, com__dateafromchar_mb(text.data(), length, 0, 1, names, names, nullptr, &number));
  EXPECT_EQ(kDay + 32, number);
  EXPECT_EQ(0, com__timeafromchar_mb(text.data(), length - 1, 0, 1, names, names, nullptr, &number,
                                     &lost));
  EXPECT_EQ(0, lost);
  EXPECT_EQ(static_cast<int32_t>(kTicks), number);
  EXPECT_EQ(-2, com__timefromchar_mb(text.data(), length, 0, 1, names, names, nullptr, &datetime));
  EXPECT_EQ(0, com__timefromchar_mb("10PM", 4, 0, 1, nullptr, names, nullptr, &datetime));
  EXPECT_EQ(bytes_of(comn_datetime{0, 22 * 3600 * 300}), bytes_of(datetime));
  EXPECT_EQ(-1, com__datefromchar_mb("3/2/1", 5, 103, 6, names, names, nullptr, &datetime, &lost));
  EXPECT_EQ(0, com__dateafromchar_mb(nullptr, 0, 0, 6, nullptr, nullptr, nullptr, &number));
  EXPECT_EQ(0, number);
}

TEST(DateParse, WithoutLocale) {
  const comn_datafmt format = format_of(0);
  for (comn_context* context : {static_cast<comn_context*>(nullptr), shared_context()})
    for (const comn_datafmt* of : {static_cast<const comn_datafmt*>(nullptr), &format}) {
      EXPECT_STREQ("January", com_intl_months(context, of)[0]);
      EXPECT_STREQ("Dec", com_intl_shortmonths(context, of)[11]);
      EXPECT_STREQ("Sun", com_intl_days(context, of)[0]);
      EXPECT_STREQ("Sat", com_intl_days(context, of)[6]);
      EXPECT_STREQ("mdy", com_intl_dateorder(context, of));
      EXPECT_EQ(7, com_intl_firstday(context, of));
      EXPECT_EQ(1, com_intl_dateorder_id(context, of));
      EXPECT_EQ(1, com_intl_is12hour(context, of));
    }
}

TEST(DateParseDeathTest, Misuse) {
  const comn_datafmt text = format_of(0, 4), empty = format_of(0, 0), to = format_of(12),
                     wrong = format_of(27);
  comn_datetime out;
  int32_t number;
  comn_context* const context = shared_context();
  EXPECT_DEATH(comn_chartodatetime(context, &empty, "2003", &to, &out, &number), "assertion");
  EXPECT_DEATH(comn_chartodatetime(context, &text, "2003", &wrong, &out, &number), "assertion");
  EXPECT_DEATH(comn_varchartodatetime(context, &text, "2003", &to, &out, &number), "assertion");
  EXPECT_DEATH(comn_chartodatetime(context, &text, nullptr, &to, &out, &number), "NULL");
  for (const int32_t order : {0, 7})
    EXPECT_DEATH(com__dateafromchar_mb("2003", 4, 0, order, nullptr, nullptr, nullptr, &number),
                 "assertion");
  EXPECT_DEATH(com__dateafromchar_mb("2003", 4, 0, 1, nullptr, nullptr, nullptr, nullptr), "NULL");
  EXPECT_DEATH(com__datefromchar_mb("2003", 4, 0, 1, nullptr, nullptr, nullptr, &out, nullptr),
               "NULL");
}

}  // namespace
}  // namespace tvx::test
