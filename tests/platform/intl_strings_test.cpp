// Bounded copies, locale-independent formatting, messages from templates, error texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>

#include "support/guarded_buffer.hpp"
#include "support/scratch_directory.hpp"
#include "tvxcomn/support.h"

namespace {

using tvx::test::GuardedText;

TEST(Strings, AreCutAtTheSizeAndTheWholeLengthIsReturned) {
  const std::string source = "cde";
  for (const std::string before : {"", "ab"}) {
    for (int32_t size = -1; size <= 9; ++size) {
      SCOPED_TRACE(testing::Message() << "behind \"" << before << "\" in " << size);
      GuardedText copied(before, size), appended(before, size), formatted(before, size);
      const size_t room = copied.size(), kept = std::min(before.size(), room);
      EXPECT_EQ(intl_strlcpy(copied.begin(), source.c_str(), size), 3);
      EXPECT_EQ(intl_strlcat(appended.begin(), source.c_str(), size), kept + 3);
      EXPECT_EQ(intl_snprintf(formatted.begin(), size, "%s-%d", "abc", 42), 6);
      if (room == 0) continue;
      EXPECT_EQ(copied.string(), source.substr(0, room - 1));
      // A text without a terminator stays as it is.
      EXPECT_EQ(appended.string(), (before + source).substr(0, std::max(kept, room - 1)));
      EXPECT_EQ(formatted.string(), std::string("abc-42").substr(0, room - 1));
    }
  }
  EXPECT_EQ(intl_strlcpy(nullptr, "abc", 0), 3);
  EXPECT_LT(intl_strlcpy(nullptr, "abc", 4), 0);
  EXPECT_LT(intl_strlcat(nullptr, "abc", 4), 0);
  EXPECT_EQ(intl_snprintf(nullptr, 10, "%s", "abc"), 3);
  // A wide character that the C locale cannot write.
  EXPECT_LT(intl_snprintf(GuardedText("", 9).begin(), 9, "ab%lc", static_cast<wint_t>(0x20AC)), 0);
}

TEST(Strings, FormattingKeepsThePointWhateverTheLocale) {
  const tvx::test::ScratchDirectory scratch;
  const std::string source =
      scratch.write("source", "LC_NUMERIC\ndecimal_point \",\"\nEND LC_NUMERIC\n");
  const std::string make =
      "localedef --no-archive -c -i " + source + " " + scratch.path() + "/comma >/dev/null 2>&1";
  if (std::system(make.c_str()) >= 0) setenv("LOCPATH", scratch.path().c_str(), 1);
  if (std::setlocale(LC_NUMERIC, "comma") == nullptr) GTEST_SKIP() << "no locale with a comma";
  char text[30];
  EXPECT_EQ(intl_snprintf(text, sizeof text, "%.*g", 17, 0.1), 19);
  EXPECT_STREQ(text, "0.10000000000000001");
  std::snprintf(text, sizeof text, "%.1f", 0.5);
  EXPECT_STREQ(text, "0,5") << "the process's locale stays";
  std::setlocale(LC_NUMERIC, "C");
  unsetenv("LOCPATH");
}

// The text built, or the error's text. Builds it at every smaller size too.
template <class... Arguments>
std::string build(const char* message_template, const char* format, Arguments... arguments) {
  GuardedText whole("before", 150);
  const int32_t length =
      intl_strbuild(0, whole.begin(), 150, message_template, format, arguments...);
  EXPECT_EQ(whole.string().size(), std::max(length, 0));
  if (length < 0) return intl_errstr(length);
  for (int32_t size = 0; size <= length + 1; ++size) {
    GuardedText part("before", size);
    const int32_t result =
        intl_strbuild(0, part.begin(), size, message_template, format, arguments...);
    EXPECT_EQ(result >= 0, size > length) << message_template;
    EXPECT_EQ(part.string(), size > length ? whole.string() : "");
  }
  return whole.string();
}

TEST(Strings, MessagesAreBuiltFromTemplates) {
  const std::pair<const char*, const char*> rows[] = {
      {"", ""},          {"%3! of %2! in %1!", "7 of -2147483648 in name"},
      {"%%1!", "%1!"},   {"%1!%1!,%1!", "namename,name"},
      {"%1!!", "name!"}, {"100%% of %1!", "100% of name"},
  };
  for (const auto& [message_template, expected] : rows)
    EXPECT_EQ(build(message_template, "%s %ld %d", "name", INT32_MIN, 7), expected);
  for (const char* bad : {"%", "a %", "%1", "%1?", "%0!", "%4!", "%s", "%%%", "%\xB1!"})
    EXPECT_EQ(build(bad, "%s %ld %d", "name", INT32_MIN, 7),
              "a percent sign of the message template begins no place-holder")
        << bad;
}

TEST(Strings, MessageArgumentsAreReadAsTheirFormatSays) {
  constexpr char kNone[] = "a place-holder of the message template names no argument";
  constexpr char kMalformed[] = "the format of the message arguments is malformed";
  const std::pair<const char*, const char*> rows[] = {
      {"%s", kNone},        {"", kNone},
      {"%s %s", "one-two"}, {"  %s   %s  ", "one-two"},
      {"%s%s", kMalformed}, {"%s %s %s %s", kMalformed},
      {"%s %", kMalformed}, {"%s %x", kMalformed},
  };
  for (const auto& [format, expected] : rows)
    EXPECT_EQ(build("%1!-%2!", format, "one", "two", "three", "four"), expected) << format;
  EXPECT_EQ(build("%2!/%1!", "%ld %s", 0, "text"), "text/0");
  constexpr char kBadArgument[] = "an argument is null or outside its range";
  EXPECT_EQ(build("%1!", "%s", static_cast<const char*>(nullptr)), kBadArgument);
  EXPECT_EQ(build(nullptr, "%s", "a"), kBadArgument);
  EXPECT_EQ(build("a", nullptr), kBadArgument);
  EXPECT_LT(intl_strbuild(0, nullptr, 20, "a", ""), 0);
  char reserved_is_not_zero[20];
  EXPECT_LT(intl_strbuild(1, reserved_is_not_zero, 20, "a", ""), 0);
}

// The numbers reach logs and messages, so the table that people look them up in must be the
// library's.
TEST(Errors, TheDocumentedTableIsTheLibrarys) {
  std::ifstream file(TVX_SOURCE_DIR "/docs/localisation-files.md");
  const std::regex row(R"(\| (\d+) \| (.*?) \|.*)");
  std::smatch match;
  std::string documented[257];
  for (std::string line; std::getline(file, line);)
    if (std::regex_match(line, match, row)) documented[std::stoul(match[1])] = match[2];
  EXPECT_STREQ(intl_errstr(0), "no error");
  EXPECT_STREQ(intl_errstr(INT32_MIN), "unknown error number -2147483648");
  for (int32_t kind = 1; kind <= 256; ++kind) {
    const std::string text = intl_errstr(-kind);
    EXPECT_EQ(documented[kind], text.starts_with("unknown error number") ? "" : text) << kind;
  }
}

}  // namespace
