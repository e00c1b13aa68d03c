// The "datetime" section of a localisation file.
#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <string>

#include "platform/intl_scratch.hpp"
#include "tvxcomn/support.h"

namespace {

// Reads the first section of a file. Returns the error's text, or an empty one.
std::string read(const std::string& path, intl_datetime_record& record) {
  intl_reader reader;
  int32_t status = intl_open(path.c_str(), &reader);
  if (status >= 0 && intl_nextsection(&reader, &status) != nullptr) {
    status = intl_datetime(&reader, &record);
    if (status < 0) {
      int32_t after = 0;
      EXPECT_EQ(intl_nextsection(&reader, &after), nullptr);
      EXPECT_EQ(after, status) << "an error does not stay";
    }
  }
  intl_close(&reader);
  return status < 0 ? intl_errstr(status) : "";
}

constexpr char kSection[] =
    "; comment\n"
    "[datetime]\n"
    "months = janvier, \"f\xC3\xA9vrier\", mars, avril, mai, juin,\n"
    "         juillet, twenty_bytes_of_name, sept, oct, nov, d\xC3\xA9"
    "c\n"
    "short_months = ja, fe, mr, av, ma, jn, jl, nine_char, se, oc, no, de\n"
    "days = lundi, mardi, mercredi, thirty_bytes_are_the_most_here, vendredi, samedi, dimanche\n"
    "first_day = 1\n"
    "date_order = dmy\n"
    "twelve_hour = 0\n";

class DatetimeTest : public testing::Test {
protected:
  // Reads kSection with the first match of a pattern replaced.
  std::string read_changed(const std::string& pattern, const std::string& replacement,
                           intl_datetime_record& record) {
    const std::string content =
        std::regex_replace(std::string(kSection), std::regex(pattern), replacement,
                           std::regex_constants::format_first_only);
    EXPECT_NE(content, kSection) << pattern;
    return read(scratch_.write("common.loc", content), record);
  }

  tvx::test::ScratchDirectory scratch_;
};

TEST_F(DatetimeTest, TheShippedFileIsReadWhole) {
  intl_datetime_record record{};
  ASSERT_EQ(read(TVX_SOURCE_DIR "/data/home/locales/message/us_english/common.loc", record), "");
  EXPECT_STREQ(record.months[0], "January");
  EXPECT_STREQ(record.months[11], "December");
  EXPECT_STREQ(record.short_months[0], "Jan");
  EXPECT_STREQ(record.short_months[11], "Dec");
  EXPECT_STREQ(record.days[record.first_day - 1], "Sunday");
  EXPECT_EQ(record.first_day, 7) << "days of the week are numbered from Monday";
  EXPECT_STREQ(record.date_order, "mdy");
  EXPECT_EQ(record.twelve_hour, 1);
}

TEST_F(DatetimeTest, ValuesUpToTheirSlotsAreTaken) {
  intl_datetime_record record{};
  ASSERT_EQ(read(scratch_.write("common.loc", kSection), record), "");
  EXPECT_STREQ(record.months[1], "f\xC3\xA9vrier");
  EXPECT_STREQ(record.months[7], "twenty_bytes_of_name");
  EXPECT_STREQ(record.short_months[7], "nine_char");
  EXPECT_STREQ(record.days[3], "thirty_bytes_are_the_most_here");
  EXPECT_EQ(record.first_day, 1);
  EXPECT_STREQ(record.date_order, "dmy");
  EXPECT_EQ(record.twelve_hour, 0);
}

TEST_F(DatetimeTest, FaultySectionsAreRefusedAndLeaveTheRecord) {
  struct Row {
    const char *pattern, *replacement, *expected;
  };
  const Row rows[] = {
      {"thirty", "thirty1", "line 6: a text is too long"},
      {"twenty", "twenty1", "line 4: a text is too long"},
      {"nine", "nine1", "line 5: a text is too long"},
      {"dmy", "dmyy", "line 8: a text is too long"},
      {"dmy", "\"\"", "line 8: an empty name"},
      {"mars", "", "line 3: an empty name"},
      {", dimanche", "", "line 6: too few values"},
      {"dimanche", "dimanche, a", "line 6: too many values"},
      {"de\n", "de,\nxx\n", "line 5: too many values"},
      {"dmy", "", "line 8: too few values"},
      {"dmy", "d, m, y", "line 8: too many values"},
      {"first_day = 1", "first_day = 0", "line 7: first_day is not 1 to 7"},
      {"first_day = 1", "first_day = 8", "line 7: first_day is not 1 to 7"},
      {"first_day = 1", "first_day = 1x", "line 7: first_day is not 1 to 7"},
      {"first_day = 1", "first_day =", "line 7: too few values"},
      {"hour = 0", "hour = 2", "line 9: twelve_hour is not 0, 1, no or yes"},
      {"hour = 0", "hour = \"\"", "line 9: twelve_hour is not 0, 1, no or yes"},
      {"first_day = 1", "firstday = 1", "line 7: unknown key in the datetime section"},
      {"date_order", "first_day", "line 8: a key of the datetime section occurs twice"},
      {"mercredi", "\"mercredi", "line 6: closing quote missing"},
      {"months(.|\n)*short", "short", "line 2: the datetime section has no months"},
      {"short_months.*\n", "", "line 2: the datetime section has no short_months"},
      {"days.*\n", "", "line 2: the datetime section has no days"},
      {"first_day.*\n", "", "line 2: the datetime section has no first_day"},
      {"date_order.*\n", "", "line 2: the datetime section has no date_order"},
      {"twelve_hour.*\n", "[next]", "line 2: the datetime section has no twelve_hour"},
  };
  for (const Row& row : rows) {
    intl_datetime_record record;
    std::memset(&record, 0x5A, sizeof record);
    const intl_datetime_record before = record;
    EXPECT_EQ(read_changed(row.pattern, row.replacement, record), row.expected)
        << row.pattern << " -> " << row.replacement;
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
  }
}

}  // namespace
