// The reader of localisation files: what its syntax means, what it refuses, and that no content
// makes it misbehave.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "support/failing_heap.hpp"
#include "support/scratch_directory.hpp"
#include "tvxcomn/support.h"

namespace {

using namespace std::string_view_literals;
using Events = std::vector<std::string>;

// What a file holds: "[name]", "key=", "<value>" in their order, and last an error's text if there
// is one. Every text is overwritten before the reader goes on, as by callers that convert in place.
Events read_file(const std::string& path) {
  Events events;
  const long blocks = tvx::test::live_blocks();
  intl_reader reader;
  std::memset(&reader, 0xA5, sizeof reader);
  int32_t status = intl_open(path.c_str(), &reader);
  const auto take = [&](char* text, const char* before, const char* after) {
    if (text == nullptr) return false;
    EXPECT_GE(status, 0);
    events.push_back(std::string(before) + text + after);
    std::memset(text, '"', std::strlen(text));
    return true;
  };
  while (status >= 0 && take(intl_nextsection(&reader, &status), "[", "]")) {
    while (take(intl_nextentry(&reader, &status), "", "=")) {
      bool announced, met;
      do {
        announced = status == 1;
        met = take(intl_nextvalue(&reader, &status), "<", ">");
        EXPECT_TRUE(met == announced || status < 0) << "a status tells whether a value follows";
      } while (met);
    }
  }
  if (status < 0) {
    events.push_back(intl_errstr(status));
    int32_t again = 0;
    EXPECT_EQ(intl_nextsection(&reader, &again), nullptr);
    EXPECT_TRUE(again == status || reader.opaque[0] == 0) << "an error stays";
  }
  EXPECT_GE(intl_close(&reader), 0);
  EXPECT_GE(intl_close(&reader), 0) << "a second time";
  EXPECT_EQ(tvx::test::live_blocks(), blocks);
  return events;
}

// The path of a file with that content: always the same one, in memory.
std::string file_of(std::string_view content) {
  static const int file = memfd_create("localisation file", MFD_CLOEXEC);
  EXPECT_EQ(ftruncate(file, 0), 0);
  EXPECT_EQ(pwrite(file, content.data(), content.size(), 0), static_cast<ssize_t>(content.size()));
  return "/proc/self/fd/" + std::to_string(file);
}

Events read(std::string_view content) {
  return read_file(file_of(content));
}

TEST(Reader, Syntax) {
  const std::pair<const char*, const char*> rows[] = {
      {"", ""},
      {"\n \t\n; comment\n # comment", ""},
      {"\n\nfree text\n[s]\n", "line 3: an entry before the first section"},
      {" [ a b ] ; comment\n[c]#x]\n[a b]", "[a b]line 2: text after a section name"},
      {"[a;b]\n[\"]\n[[]", "[a;b][\"][[]"},
      {"\xEF\xBB\xBF[s]\r\nk=v\r\n\r\n=", "[s]k=<v>line 4: key missing before the equals sign"},
      {"[s]\nk=", "[s]k="},
      {"[s]\nk = ; none\nk =# v\n", "[s]k=k=<# v>"},
      {"[s]\n\tignore char = a  b\t, c ;d, e #f\n", "[s]ignore char=<a  b><c>"},
      {"[s]\nk=a;b#c, ;d\n e\n", "[s]k=<a;b#c><e>"},
      {"[s]\nk==a=b\n", "[s]k=<=a=b>"},
      {"[s]\nk=,\n\n,a,,b,\n  ; comment\n,\"\"\nk=,\"\"", "[s]k=<><><a><><b><><>k=<><>"},
      {"[s]\nk = a, [b\nk = [c], d\n[t]", "[s]k=<a><[b>k=<[c]><d>[t]"},
      {"[s]\nk = a b,\n c = d\nl = e", "[s]k=<a b><c = d>l=<e>"},
      {"[s]\nk=0X41, 0, x0, 00x\n0y=0", "[s]k=<0X41><0><x0><00x>0y=<0>"},
      {"[s]\n[s]\nk=\xC3\xA4\xFF\nk=\"\x80\"\n[s]", "[s][s]k=<\xC3\xA4\xFF>k=<\x80>[s]"},
  };
  for (const auto& [content, expected] : rows) {
    std::string all;
    for (const std::string& event : read(content)) all += event;
    EXPECT_EQ(all, expected) << content;
  }
}

TEST(Reader, MalformedContentIsRefusedWithItsLine) {
  // Contents behind the line "[s]"; the mark ^ stands in the faulty line and is taken out.
  const std::pair<std::string, std::vector<std::string_view>> groups[] = {
      {"closing bracket of the section name missing", {"^[s", "^[t\n]\n"}},
      {"section name missing", {"^[]", "^[ ]\n"}},
      {"text after a section name", {"^[s] t\n", "^[s];c"}},
      {"equals sign missing after a key", {"^k", "^k\nl = 1\n", "^k ;= 1\n"}},
      {"key missing before the equals sign", {"\n^ = 1\n"}},
      {"a line begins with a comma, a quote or 0x but continues no value",
       {"k = v\n^\"w\" = 1\n", "k =\n^\"v\"\n", "k = v\n^0x41", "k = \"a\"\n^, b = c"}},
      {"closing quote missing",
       {"k = ^\"a\nb\"\n", "k = ^\"a\\\"\n", "k = ^\"\"\"\n", "k = ^\"a\\", "k = \"a\"\n\n^\"b\n"}},
      {"a quote inside unquoted text; quote the whole value", {"k = ^a\"b\"\n", "k = 1,\n ^it\"s"}},
      {"text after a quoted text or bytes; is a comma missing?",
       {"k = ^\"a\" b", "k = ^\"a\";c", "k = 0x41\n ^\"b\" c"}},
      {"0x needs an even number of hexadecimal digits; quote a text",
       {"k = ^0x", "k = ^0x,a", "k = ^0x123", "k = 0x12,\n^0x4\n1", "k = ^0x4g", "k = ^0x41;c"}},
      {"a comma after the last value", {"k = a^,\n\n[t]\n", "k = a,\nb^, ; c", "k = \"a\"^,\n"}},
      {"a control character; is this a text file?",
       {"k = ^a\rb\n", "k = ^a\r", "k = ^\"a\0\"\n"sv, "\n^k\x7F = a\n", "^[s\x01]\n",
        "^[s] ; \x1B\n", "^; \x02\n", "k = ^\"a\" ; \x03\n", "k = ^a, \x03\n",
        "^\xFF\xFE[\0s\0]\0"sv}},
  };
  for (const auto& [text, contents] : groups) {
    for (const std::string_view marked : contents) {
      std::string content = "[s]\n" + std::string(marked);
      const auto mark = std::find(content.begin(), content.end(), '^');
      const auto line = 1 + std::count(content.begin(), mark, '\n');
      content.erase(mark);
      EXPECT_EQ(read(content).back(), "line " + std::to_string(line) + ": " + text) << content;
    }
  }
}

TEST(Reader, StepsMaySkipWhatTheyDoNotWant) {
  const std::pair<decltype(&intl_nextvalue), const char*> steps[] = {
      {intl_nextvalue, nullptr}, {intl_nextentry, nullptr}, {intl_nextsection, "a"},
      {intl_nextentry, "k"},     {intl_nextvalue, "1"},     {intl_nextentry, "l"},
      {intl_nextsection, "b"},   {intl_nextentry, "m"},     {intl_nextvalue, "\x01\x02"},
  };
  intl_reader reader;
  int32_t status = -1;
  const std::string path = file_of("[a]\nk = 1, 2\nl = 3\n[b]\nm = 0x01\n0x02, 5\nn = \"6\n[c]\n");
  ASSERT_GE(intl_open(path.c_str(), &reader), 0);
  const char* text = nullptr;
  for (const auto& [step, expected] : steps) EXPECT_STREQ(text = step(&reader, &status), expected);
  EXPECT_EQ(std::string_view(text, 5), "\x01\x02\0\0\0"sv) << "callers may take four bytes at once";
  EXPECT_EQ(status, 1);
  EXPECT_EQ(intl_nextsection(&reader, &status), nullptr) << "what is skipped is checked too";
  EXPECT_STREQ(intl_errstr(status), "line 7: closing quote missing");
  intl_close(&reader);
}

TEST(Reader, FilesThatCannotBeLoadedAreRefused) {
  const tvx::test::ScratchDirectory scratch;
  const std::string fifo = scratch.path() + "/fifo", large = scratch.write("large", "");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::pair<std::string, const char*> rows[] = {
      {scratch.path(), "not a regular file"},
      {fifo, "not a regular file"},
      {scratch.path() + "/none", "the file does not exist"},
      {large + "/file", "the file does not exist"},
      {std::string(5000, 'n'), "the file cannot be opened"},
  };
  for (const auto& [path, expected] : rows) EXPECT_EQ(read_file(path), Events{expected}) << path;
  EXPECT_EQ(read_file("/proc/self/comm"), Events{"line 1: an entry before the first section"})
      << "a file that tells no size";
  std::filesystem::resize_file(large, (256 << 20) + 1);
  EXPECT_EQ(read_file(large), Events{"the file is larger than 256 MiB"});
  std::filesystem::resize_file(large, 256 << 20);
  EXPECT_EQ(read_file(large), Events{"line 1: a control character; is this a text file?"});
  const tvx::test::FailingHeap heap(1);
  EXPECT_EQ(read("[s]"), Events{"out of memory"});
}

TEST(Reader, MissingArgumentsAndReadersThatAreNotOpenGiveErrors) {
  intl_reader reader{};
  intl_datetime_record record{};
  EXPECT_LT(intl_open(nullptr, &reader), 0);
  EXPECT_LT(intl_open("file", nullptr), 0);
  for (intl_reader* which : {&reader, static_cast<intl_reader*>(nullptr)}) {
    for (auto* step : {intl_nextsection, intl_nextentry, intl_nextvalue}) {
      int32_t status = 0;
      EXPECT_EQ(step(which, &status), nullptr);
      EXPECT_LT(status, 0);
      EXPECT_EQ(step(which, nullptr), nullptr);
    }
    EXPECT_LT(intl_datetime(which, &record), 0);
  }
  EXPECT_LT(intl_close(nullptr), 0);
}

TEST(Reader, AnyContentIsReadToAnEnd) {
  constexpr std::string_view kCharacters = "[]=,\";#\\0x \t\r\n\n\nab19\xC3";
  std::mt19937 random(20260);
  for (int round = 0; round < 10000; ++round) {
    std::string text(random() % 80, '\0');
    for (char& c : text) c = kCharacters[random() % kCharacters.size()];
    for (const std::string& content : {text, "[s]\nk=" + text})
      EXPECT_LE(read(content).size(), content.size() + 1) << content;
  }
}

// Whatever the pieces, and whatever stands between them.
TEST(Reader, PiecesAreJoinedToValues) {
  constexpr std::pair<const char*, const char*> kPieces[] = {
      {R"("")", ""},         {R"("""")", "\""},        {R"("a""b")", "a\"b"},
      {R"("\"")", "\\\""},   {R"("\n\\")", "\\n\\\\"}, {R"(" a;b, #c ")", " a;b, #c "},
      {R"("0x41")", "0x41"}, {"0x4a4B", "JK"},         {"0x225cFF", "\"\\\xFF"},
  };
  constexpr const char* kBetween[] = {" ", "\t",  "\n",  " ; c\r\n\n  ",  // the same value goes on
                                      ",", " , ", ",\n", " , # c\n ; c\n\t"};
  std::mt19937 random(415);
  for (int round = 0; round < 2000; ++round) {
    std::string content = "[s]\nk=\"\"";
    Events expected = {"[s]", "k=", "<"};
    for (size_t pieces = random() % 12; pieces > 0; --pieces) {
      const size_t between = random() % std::size(kBetween);
      if (between >= 4) {
        expected.back() += '>';
        expected.push_back("<");
      }
      const auto& [written, text] = kPieces[random() % std::size(kPieces)];
      content += kBetween[between] + std::string(written);
      expected.back() += text;
    }
    expected.back() += '>';
    ASSERT_EQ(read(content), expected) << content;
  }
}

TEST(Reader, MillionsOfLines) {
  std::string content = "[s]\n";
  for (int line = 0; line < 200'000; ++line) content += "k = \"v\", 0x41\n";
  const Events events = read(content + std::string(8'400'000, '\n') + "[s");
  EXPECT_EQ(events.size(), 1 + 3 * 200'000 + 1);
  EXPECT_EQ(events.back(), "line 8388607 or later: closing bracket of the section name missing");
}

}  // namespace
