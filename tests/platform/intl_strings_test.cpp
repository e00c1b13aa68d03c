// The heap, bounded copies, locale-independent formatting, messages from templates, error texts.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <regex>
#include <string>
#include <thread>

#include "platform/intl_scratch.hpp"
#include "tvxcomn/support.h"

namespace {

constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();

// A buffer in which writes beyond a given size show.
struct Guarded {
  explicit Guarded(const char* text = "") {
    std::memset(bytes, '~', sizeof bytes);
    std::strcpy(bytes, text);
  }
  bool untouched_from(int32_t size) const {
    return std::string(bytes + size, sizeof bytes - static_cast<size_t>(size))
               .find_first_not_of('~') == std::string::npos;
  }
  char bytes[200];
};

// Asks the library by its name, since a test executable may have put a heap of its own in front.
TEST(Heap, KeepsTheContractOfTheCLibrarys) {
  void* library = dlopen("libtvxintl64.so.15", RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto find = [&]<class F>(F*, const char* name) {
    return reinterpret_cast<F*>(dlsym(library, name));
  };
  const auto release = find(comn_free, "comn_free");
  auto* block = static_cast<char*>(find(comn_calloc, "comn_calloc")(3, 50));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::string(block, 150), std::string(150, '\0'));
  block[149] = 'x';
  block = static_cast<char*>(find(comn_realloc, "comn_realloc")(block, 100000));
  EXPECT_EQ(block[149], 'x');
  release(block);
  release(find(comn_malloc, "comn_malloc")(0));
  release(nullptr);
  dlclose(library);
}

TEST(Strings, CopyAndAppendCutAtTheSizeAndReturnTheLengthAimedAt) {
  struct Row {
    const char *before, *source;
    int32_t size;
    const char *copied, *appended;
    int32_t append_length;
  };
  const Row rows[] = {
      {"ab", "cde", 9, "cde", "abcde", 5}, {"ab", "cde", 6, "cde", "abcde", 5},
      {"ab", "cde", 5, "cde", "abcd", 5},  {"ab", "cde", 4, "cde", "abc", 5},
      {"ab", "cde", 3, "cd", "ab", 5},     {"ab", "cde", 2, "c", "ab", 5},
      {"ab", "cde", 1, "", "ab", 4},       {"ab", "cde", 0, "ab", "ab", 3},
      {"ab", "cde", -1, "ab", "ab", 3},    {"", "", 1, "", "", 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.source << " into " << row.size);
    const int32_t before_end = static_cast<int32_t>(std::strlen(row.before)) + 1;
    Guarded copy(row.before);
    EXPECT_EQ(intl_strlcpy(copy.bytes, row.source, row.size),
              static_cast<int32_t>(std::strlen(row.source)));
    EXPECT_STREQ(copy.bytes, row.copied);
    EXPECT_TRUE(copy.untouched_from(std::max(row.size, before_end)));
    Guarded append(row.before);
    EXPECT_EQ(intl_strlcat(append.bytes, row.source, row.size), row.append_length);
    EXPECT_STREQ(append.bytes, row.appended);
    EXPECT_TRUE(append.untouched_from(std::max(row.size, before_end)));
  }
  EXPECT_EQ(intl_strlcpy(nullptr, "abc", 0), 3);
  EXPECT_LT(intl_strlcpy(nullptr, "abc", 4), 0);
  EXPECT_LT(intl_strlcat(nullptr, "abc", 4), 0);
}

TEST(Strings, FormattingCutsAndReturnsTheWholeLength) {
  for (int32_t size = -1; size < 9; ++size) {
    Guarded buffer;
    EXPECT_EQ(intl_snprintf(buffer.bytes, size, "%s-%d", "abc", 42), 6);
    if (size > 0) {
      EXPECT_EQ(buffer.bytes, std::string("abc-42").substr(0, static_cast<size_t>(size) - 1));
    }
    EXPECT_TRUE(buffer.untouched_from(std::max(size, 1)));
  }
  EXPECT_EQ(intl_snprintf(nullptr, 10, "%s", "abc"), 3);
  char buffer[10] = "before";
  // A wide character that the C locale cannot write.
  EXPECT_LT(intl_snprintf(buffer, sizeof buffer, "ab%lc", static_cast<wint_t>(0x20AC)), 0);
}

TEST(Strings, FormattingKeepsThePointWhateverTheLocale) {
  const tvx::test::ScratchDirectory scratch;
  const std::string make =
      "localedef --no-archive -i de_DE -f UTF-8 " + scratch.path() + "/de_DE.UTF-8 >/dev/null 2>&1";
  if (std::system(make.c_str()) == 0) setenv("LOCPATH", scratch.path().c_str(), 1);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale with a comma";
  const auto in_process_locale = [] {
    char text[20];
    std::snprintf(text, sizeof text, "%.2f", 1234.5);
    return std::string(text);
  };
  ASSERT_EQ(in_process_locale(), "1234,50");
  const auto check = [] {
    char text[30];
    EXPECT_EQ(intl_snprintf(text, sizeof text, "%.*g", 17, 0.1), 19);
    EXPECT_STREQ(text, "0.10000000000000001");
  };
  check();
  std::thread(check).join();
  EXPECT_EQ(in_process_locale(), "1234,50");
  std::setlocale(LC_ALL, "C");
  unsetenv("LOCPATH");
}

// The text built, or "error: " and the error's text. Builds it again at every smaller size.
template <class... Arguments>
std::string build(const char* message_template, const char* format, Arguments... arguments) {
  Guarded whole;
  const int32_t length = intl_strbuild(0, whole.bytes, 150, message_template, format, arguments...);
  if (length < 0) {
    EXPECT_STREQ(whole.bytes, "");
    return std::string("error: ") + intl_errstr(length);
  }
  EXPECT_EQ(static_cast<size_t>(length), std::strlen(whole.bytes));
  for (int32_t size = 0; size <= length + 1; ++size) {
    Guarded part;
    const int32_t result =
        intl_strbuild(0, part.bytes, size, message_template, format, arguments...);
    EXPECT_EQ(result >= 0, size > length) << message_template;
    EXPECT_STREQ(part.bytes, size > length ? whole.bytes : "");
    EXPECT_TRUE(part.untouched_from(std::max(size, 1)));
  }
  return whole.bytes;
}

TEST(Strings, MessagesAreBuiltFromTemplates) {
  const std::string bad_template =
      "error: a percent sign of the message template begins no place-holder";
  const std::pair<const char*, std::string> rows[] = {
      {"", ""},
      {"no place-holder", "no place-holder"},
      {"%1!", "name"},
      {"%3! of %2! in %1!", "7 of -2147483648 in name"},
      {"%1!%1!,%1!", "namename,name"},
      {"100%% of %1!", "100% of name"},
      {"%%1!", "%1!"},
      {"%1!!", "name!"},
      {"%", bad_template},
      {"a %", bad_template},
      {"%1", bad_template},
      {"%1?", bad_template},
      {"%0!", bad_template},
      {"%4!", bad_template},
      {"%s", bad_template},
      {"%%%", bad_template},
      {"%\xB1!", bad_template},
  };
  for (const auto& [message_template, expected] : rows) {
    EXPECT_EQ(build(message_template, "%s %ld %d", "name", kLeast, 7), expected)
        << message_template;
  }
}

TEST(Strings, MessageArgumentsAreReadAsTheirFormatSays) {
  const std::string malformed = "error: the format of the message arguments is malformed";
  const std::pair<const char*, std::string> rows[] = {
      {"%s", "error: a place-holder of the message template names no argument"},
      {"", "error: a place-holder of the message template names no argument"},
      {"%s %s", "one-two"},
      {"  %s   %s  ", "one-two"},
      {"%s %s %s", "one-two"},
      {"%s %s %s %s", malformed},
      {"%s%s", malformed},
      {"%s %", malformed},
      {"%s %x", malformed},
      {"%s, %s", malformed},
  };
  for (const auto& [format, expected] : rows) {
    EXPECT_EQ(build("%1!-%2!", format, "one", "two", "three", "four"), expected) << format;
  }
  EXPECT_EQ(build("%2!/%1!", "%ld %s", 0, "text"), "text/0");
  char buffer[20] = "before";
  EXPECT_LT(intl_strbuild(0, buffer, 20, "%1!", "%s", static_cast<const char*>(nullptr)), 0);
  EXPECT_LT(intl_strbuild(0, buffer, 20, nullptr, "%s", "a"), 0);
  EXPECT_LT(intl_strbuild(0, buffer, 20, "a", nullptr), 0);
  EXPECT_LT(intl_strbuild(0, nullptr, 20, "a", ""), 0);
}

TEST(Errors, NumbersHaveTexts) {
  const std::pair<int32_t, const char*> rows[] = {
      {0, "no error"},
      {12, "no error"},
      {-1, "out of memory"},
      {-(40 + 256 * 12), "line 12: closing quote missing"},
      {-(40 + 256 * 8388606), "line 8388606: closing quote missing"},
      {-(40 + 256 * 8388607), "line 8388607 or later: closing quote missing"},
      {-255, "unknown error number -255"},
      {-256, "unknown error number -256"},
      {kLeast, "unknown error number -2147483648"},
      {kLeast + 1, "unknown error number -2147483647"},
  };
  for (const auto& [code, text] : rows) EXPECT_STREQ(intl_errstr(code), text);
}

// The numbers reach logs and messages, so the table that people look them up in must be the
// library's.
TEST(Errors, TheDocumentedTableIsTheLibrarys) {
  std::ifstream file(TVX_SOURCE_DIR "/docs/localisation-files.md");
  const std::regex row(R"(\| (\d+) \| (.*?) \|.*)");
  std::smatch match;
  std::string documented[256];
  for (std::string line; std::getline(file, line);) {
    if (std::regex_match(line, match, row)) documented[std::stoul(match[1])] = match[2];
  }
  for (int32_t kind = 1; kind < 256; ++kind) {
    const std::string text = intl_errstr(-kind);
    EXPECT_EQ(documented[kind], text.starts_with("unknown error number") ? "" : text) << kind;
  }
}

}  // namespace
