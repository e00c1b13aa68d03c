// The "datetime" section of a localisation file.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <regex>

#include "support/scratch_directory.hpp"
#include "tvxcomn/support.h"

namespace {

// Reads the first section of a file. Returns the error's text, or an empty one.
std::string read(const std::string& path, intl_datetime_record& record) {
  intl_reader reader;
  EXPECT_EQ(intl_open(path.c_str(), &reader), 0);
  intl_nextsection(&reader, nullptr);
  const int32_t status = intl_datetime(&reader, &record);
  intl_close(&reader);
  return status < 0 ? intl_errstr(status) : "";
}

constexpr char kSection[] =
    "; comment\n[datetime]\n"
    "months = janvier, \"f\xC3\xA9vrier\", mars, avril, mai, juin,\n"
    "         juillet, twenty_bytes_of_name, sept, oct, nov, dec\n"
    "short_months = ja, fe, mr, av, ma, jn, jl, nine_char, se, oc, no, de\n"
    "days = lundi, mardi, mercredi, thirty_bytes_are_the_most_here, vendredi, samedi, dimanche\n"
    "first_day = 1\ndate_order = dmy\ntwelve_hour = 0\n";

TEST(DatetimeSection, TheShippedFileIsReadWhole) {
  intl_datetime_record record{};
  ASSERT_EQ(read(TVX_SOURCE_DIR "/data/home/locales/message/us_english/common.loc", record), "");
  EXPECT_STREQ(record.months[11], "December");
  EXPECT_STREQ(record.days[record.first_day - 1], "Sunday");
  EXPECT_EQ(record.first_day, 7) << "days of the week are numbered from Monday";
  EXPECT_STREQ(record.date_order, "mdy");
  EXPECT_EQ(record.twelve_hour, 1);
}

TEST(DatetimeSection, NamesMayFillTheirSlotsAndFaultsLeaveTheRecord) {
  // A pattern, what replaces its first match, the error.
  const std::array<const char*, 3> rows[] = {
      {"thirty", "thirty1", "line 6: a text is too long"},
      {"twenty", "twenty1", "line 4: a text is too long"},
      {"nine", "nine1", "line 5: a text is too long"},
      {"dmy", "dmyy", "line 8: a text is too long"},
      {"mars", "", "line 3: an empty name"},
      {"mars", "0x6d0061", "line 3: a zero byte in a text"},
      {"mars", "0x61000000000000000000000000000000000000000061", "line 3: a text is too long"},
      {", dimanche", "", "line 6: too few values"},
      {"first_day = 1", "first_day =", "line 7: too few values"},
      {"de\n", "de,\nxx\n", "line 5: too many values"},
      {"dmy", "d, m, y", "line 8: too many values"},
      {"first_day = 1", "first_day = 0", "line 7: first_day is not 1 to 7"},
      {"first_day = 1", "first_day = 8", "line 7: first_day is not 1 to 7"},
      {"first_day = 1", "first_day = 0x3100", "line 7: first_day is not 1 to 7"},
      {"hour = 0", "hour = 2", "line 9: twelve_hour is not 0, 1, no or yes"},
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
  const tvx::test::ScratchDirectory scratch;
  intl_datetime_record record{};
  ASSERT_EQ(read(scratch.write("common.loc", kSection), record), "");
  EXPECT_STREQ(record.days[3], "thirty_bytes_are_the_most_here");
  EXPECT_EQ(record.first_day, 1);
  EXPECT_EQ(record.twelve_hour, 0);
  std::memset(&record, 0x5A, sizeof record);
  const intl_datetime_record before = record;
  for (const auto& [pattern, replacement, expected] : rows) {
    const std::string content =
        std::regex_replace(std::string(kSection), std::regex(pattern), replacement,
                           std::regex_constants::format_first_only);
    EXPECT_EQ(read(scratch.write("common.loc", content), record), expected)
        << pattern << " -> " << replacement;
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
  }
}

}  // namespace
