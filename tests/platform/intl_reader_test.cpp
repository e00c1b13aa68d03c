// The reader of localisation files: what its syntax means, what it refuses, and that no content
// makes it misbehave.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/intl_scratch.hpp"
#include "support/failing_heap.hpp"
#include "tvxcomn/support.h"

namespace {

using Events = std::vector<std::string>;
using tvx::test::FailingHeap;
using tvx::test::live_blocks;

// What a file holds: "[name]", "key=", "<value>" in their order, and last an error's text if there
// is one. Every text is overwritten before the reader goes on, as a caller that converts in place
// does.
Events read_file(const std::string& path) {
  Events events;
  const long blocks = live_blocks();
  intl_reader reader;
  std::memset(&reader, 0xA5, sizeof reader);
  int32_t status = intl_open(path.c_str(), &reader);
  const auto take = [&](char* text, const char* before, const char* after) {
    if (text != nullptr) {
      EXPECT_GE(status, 0);
      events.push_back(std::string(before) + text + after);
      std::memset(text, '"', std::strlen(text));
    }
    return text != nullptr;
  };
  while (status >= 0 && take(intl_nextsection(&reader, &status), "[", "]")) {
    while (take(intl_nextentry(&reader, &status), "", "=")) {
      bool more = status == 1;
      while (take(intl_nextvalue(&reader, &status), "<", ">")) {
        EXPECT_TRUE(more) << "a value after a status without more";
        more = status == 1;
      }
      EXPECT_TRUE(!more || status < 0) << "no value after a status with more";
    }
  }
  if (status < 0) {
    events.push_back(intl_errstr(status));
    int32_t again = 0;
    EXPECT_EQ(intl_nextvalue(&reader, &again), nullptr);
    EXPECT_EQ(intl_nextsection(&reader, &again), nullptr);
    EXPECT_TRUE(again == status || reader.opaque[0] == 0) << "an error does not stay";
  }
  EXPECT_GE(intl_close(&reader), 0);
  EXPECT_GE(intl_close(&reader), 0) << "a second time";
  EXPECT_EQ(live_blocks(), blocks);
  return events;
}

class ReaderTest : public testing::Test {
protected:
  ReaderTest() : memory_file_(memfd_create("localisation file", MFD_CLOEXEC)) {}
  ~ReaderTest() override { close(memory_file_); }

  // Reads a file that holds the content; one in memory, for tests that read many.
  Events read(std::string_view content) {
    EXPECT_EQ(ftruncate(memory_file_, 0), 0);
    EXPECT_EQ(pwrite(memory_file_, content.data(), content.size(), 0),
              static_cast<ssize_t>(content.size()));
    return read_file("/proc/self/fd/" + std::to_string(memory_file_));
  }

  tvx::test::ScratchDirectory scratch_;

private:
  int memory_file_;
};

TEST_F(ReaderTest, Syntax) {
  const std::pair<const char*, const char*> rows[] = {
      {"", ""},
      {"\n \t\n; comment\n # comment", ""},
      {"[a]", "[a]"},
      {" [ a b ] ; comment\n[c]#x]\n[a b]", "[a b]line 2: text after a section name"},
      {"[a;b]\n[\"]\n[[]", "[a;b][\"][[]"},
      {"[s]\nk", "[s]line 2: equals sign missing after a key"},
      {"\xEF\xBB\xBF[s]\r\nk=v\r\n", "[s]k=<v>"},
      {"[s]\nk=v", "[s]k=<v>"},
      {"[s]\nk=", "[s]k="},
      {"[s]\nk = ; none\nk =# v\n", "[s]k=k=<# v>"},
      {"[s]\n\tignore char = a  b\t, c ;d, e #f\n", "[s]ignore char=<a  b><c>"},
      {"[s]\nk=a;b#c, ;d\n e\n", "[s]k=<a;b#c><e>"},
      {"[s]\nk==a=b\n", "[s]k=<=a=b>"},
      {"[s]\nk=,\n\n,a,,b,\n  ; comment\n,\"\"\nk=,\"\"", "[s]k=<><><a><><b><><>k=<><>"},
      {"[s]\nk = a, [b\nk = [c], d\n[t]", "[s]k=<a><[b>k=<[c]><d>[t]"},
      {"[s]\nk = a b,\n c = d\nl = e", "[s]k=<a b><c = d>l=<e>"},
      {"[s]\nk=\" a, b \" , \"c;d #e\" ;f\nl=\"\"", "[s]k=< a, b ><c;d #e>l=<>"},
      {"[s]\nk=\"a\"\"b\", \"\"\"\", \"\\\"\", \"a\\\\\", \"a\\n\"\"\"",
       "[s]k=<a\"b><\"><\\\"><a\\\\><a\\n\">"},
      {"[s]\nk=\"a\" \"b\"\n\n ; comment\n\t\"c\" , d\nl=\"e\"\nm=f", "[s]k=<abc><d>l=<e>m=<f>"},
      {"[s]\nk=\"a\"0x42\"c\" ; comment\n0x44,0x4a4B\n\n", "[s]k=<aBcD><JK>"},
      {"[s]\nk=\"0x41\", 0X41, 0, x0, 00x\n0y=0", "[s]k=<0x41><0X41><0><x0><00x>0y=<0>"},
      {"[s]\nk=\xC3\xA4\xFF, \"\x80\x9F\"\n", "[s]k=<\xC3\xA4\xFF><\x80\x9F>"},
      {"[s]\n[s]\nk=a\nk=b\n[s]\nk=c", "[s][s]k=<a>k=<b>[s]k=<c>"},
  };
  for (const auto& [content, expected] : rows) {
    std::string all;
    for (const std::string& event : read(content)) all += event;
    EXPECT_EQ(all, expected) << content;
  }
}

TEST_F(ReaderTest, MalformedContentIsRefusedWithItsLine) {
  struct Group {
    std::string text;
    std::vector<std::pair<int, std::string_view>> cases;  // the line and the content
  };
  const Group groups[] = {
      {"an entry before the first section", {{1, "k = v"}, {3, "\n\nfree text\n[s]\n"}}},
      {"closing bracket of the section name missing", {{1, "[s"}, {2, "[s]\n[t\n]\n"}}},
      {"section name missing", {{1, "[]"}, {1, "[ ]\n"}}},
      {"text after a section name", {{1, "[s] t\n"}, {1, "[s];c"}}},
      {"equals sign missing after a key", {{2, "[s]\nk\nl = 1\n"}, {2, "[s]\nk ;= 1\n"}}},
      {"key missing before the equals sign", {{3, "[s]\n\n = 1\n"}}},
      {"a line begins with a comma, a quote or 0x but continues no value",
       {{3, "[s]\nk = v\n\"w\" = 1\n"},
        {3, "[s]\nk =\n\"v\"\n"},
        {3, "[s]\nk = v\n0x41"},
        {3, "[s]\nk = \"a\"\n, b = c"}}},
      {"closing quote missing",
       {{2, "[s]\nk = \"a\nb\"\n"},
        {2, "[s]\nk = \"a\\\"\n"},
        {2, "[s]\nk = \"\"\"\n"},
        {2, "[s]\nk = \"a\\"},
        {4, "[s]\nk = \"a\"\n\n\"b\n"}}},
      {"a quote inside unquoted text; quote the whole value",
       {{2, "[s]\nk = a\"b\"\n"}, {3, "[s]\nk = 1,\n it\"s\n"}}},
      {"text after a quoted text or bytes; is a comma missing?",
       {{2, "[s]\nk = \"a\" b"}, {2, "[s]\nk = \"a\";c"}, {3, "[s]\nk = 0x41\n \"b\" c"}}},
      {"0x needs an even number of hexadecimal digits; quote a text",
       {{2, "[s]\nk = 0x"},
        {2, "[s]\nk = 0x,a"},
        {2, "[s]\nk = 0x123"},
        {3, "[s]\nk = 0x12,\n0x4\n1"},
        {2, "[s]\nk = 0x41g"},
        {2, "[s]\nk = 0x41;c"}}},
      {"a comma after the last value",
       {{2, "[s]\nk = a,\n\n[t]\n"}, {3, "[s]\nk = a,\nb, ; c"}, {2, "[s]\nk = \"a\",\n"}}},
      {"a control character; is this a text file?",
       {{2, "[s]\nk = a\rb\n"},
        {2, "[s]\nk = a\r"},
        {2, {"[s]\nk = \"a\0\"\n", 13}},
        {3, "[s]\n\nk\x7F = a\n"},
        {1, "[s\x01]\n"},
        {1, "[s] ; \x1B\n"},
        {1, "; \x02\n"},
        {2, "[s]\nk = \"a\" ; \x03\n"},
        {2, "[s]\nk = a, \x03\n"},
        {1, {"\xFF\xFE[\0s\0]\0", 8}}}},
  };
  for (const auto& [text, cases] : groups) {
    for (const auto& [line, content] : cases) {
      const Events events = read(content);
      ASSERT_FALSE(events.empty()) << content;
      EXPECT_EQ(events.back(), "line " + std::to_string(line) + ": " + text) << content;
    }
  }
}

// Callers take up to four bytes of a value as one number.
TEST_F(ReaderTest, BytesAreFollowedByZeros) {
  using namespace std::string_view_literals;
  const std::pair<const char*, std::string_view> rows[] = {
      {"0x41", "\x41\0\0\0"sv},
      {"0x00", "\0\0\0\0"sv},
      {"0xABcd,0xFF", "\xAB\xCD\0\0\0"sv},
      {"0x010203040506,7", "\x01\x02\x03\x04\x05\x06\0\0\0"sv},
      {"0x01\n0x02\n, 9", "\x01\x02\0\0\0"sv},
      {"\"a\"0x7F", "a\x7F\0\0\0"sv},
  };
  for (const auto& [value, expected] : rows) {
    intl_reader reader;
    const std::string path = scratch_.write("file", std::string("[s]\nk=") + value);
    ASSERT_GE(intl_open(path.c_str(), &reader), 0);
    intl_nextsection(&reader, nullptr);
    intl_nextentry(&reader, nullptr);
    const char* bytes = intl_nextvalue(&reader, nullptr);
    ASSERT_NE(bytes, nullptr) << value;
    EXPECT_EQ(std::string_view(bytes, expected.size()), expected) << value;
    intl_close(&reader);
  }
}

TEST_F(ReaderTest, StepsMaySkipWhatTheyDoNotWant) {
  intl_reader reader;
  int32_t status = -1;
  const std::string path =
      scratch_.write("file", "[a]\nk = 1, 2\nl = 3\n[b]\nm = 4,\n5\nn = \"6\n[c]\n");
  ASSERT_GE(intl_open(path.c_str(), &reader), 0);
  EXPECT_EQ(intl_nextvalue(&reader, &status), nullptr);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(intl_nextentry(&reader, &status), nullptr);
  EXPECT_EQ(status, 0);
  EXPECT_STREQ(intl_nextsection(&reader, &status), "a");
  EXPECT_STREQ(intl_nextentry(&reader, &status), "k");
  EXPECT_STREQ(intl_nextvalue(&reader, &status), "1");
  EXPECT_STREQ(intl_nextentry(&reader, &status), "l");
  EXPECT_STREQ(intl_nextsection(&reader, &status), "b");
  EXPECT_STREQ(intl_nextentry(&reader, &status), "m");
  EXPECT_EQ(intl_nextsection(&reader, &status), nullptr) << "what is skipped is checked too";
  EXPECT_STREQ(intl_errstr(status), "line 7: closing quote missing");
  intl_close(&reader);
}

TEST_F(ReaderTest, OnlyRegularFilesOfReasonableSizeAreOpened) {
  const std::string fifo = scratch_.path() + "/fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string large = scratch_.write("large", "");
  std::filesystem::resize_file(large, (256 << 20) + 1);
  const std::string largest = scratch_.write("largest", "");
  std::filesystem::resize_file(largest, 256 << 20);
  const std::pair<std::string, const char*> rows[] = {
      {scratch_.path(), "not a regular file"},
      {fifo, "not a regular file"},
      {"/dev/zero", "not a regular file"},
      {"", "the file does not exist"},
      {scratch_.path() + "/none", "the file does not exist"},
      {large + "/file", "the file does not exist"},
      {std::string(5000, 'n'), "the file cannot be opened"},
      {large, "the file is larger than 256 MiB"},
      {largest, "line 1: a control character; is this a text file?"},
  };
  for (const auto& [path, expected] : rows) EXPECT_EQ(read_file(path), Events{expected}) << path;
}

TEST_F(ReaderTest, MissingArgumentsAndReadersThatAreNotOpenGiveErrors) {
  intl_reader reader{};
  int32_t status = 0;
  intl_datetime_record record{};
  EXPECT_LT(intl_open(nullptr, &reader), 0);
  EXPECT_LT(intl_open("file", nullptr), 0);
  for (intl_reader* which : {&reader, static_cast<intl_reader*>(nullptr)}) {
    for (auto* step : {intl_nextsection, intl_nextentry, intl_nextvalue}) {
      status = 0;
      EXPECT_EQ(step(which, &status), nullptr);
      EXPECT_LT(status, 0);
      EXPECT_EQ(step(which, nullptr), nullptr);
    }
    EXPECT_LT(intl_datetime(which, &record), 0);
  }
  EXPECT_GE(intl_close(&reader), 0);
  EXPECT_LT(intl_close(nullptr), 0);
}

TEST_F(ReaderTest, AFailingAllocationIsReported) {
  const std::string path = scratch_.write("file", "[s]\nk = v\n");
  long needed = 0;
  {
    const FailingHeap heap(0);
    EXPECT_EQ(read_file(path), (Events{"[s]", "k=", "<v>"}));
    needed = heap.calls();
  }
  ASSERT_GE(needed, 1);
  for (long nth = 1; nth <= needed; ++nth) {
    const FailingHeap heap(nth);
    EXPECT_EQ(read_file(path), Events{"out of memory"});
  }
}

// ---- Properties over much content --------------------------------------------------------------

constexpr std::string_view kValidFile =
    "\xEF\xBB\xBF; comment\r\n[first section]\r\nkey = plain value, \"quo\\\"ted\"\"\" ; "
    "comment\r\n"
    "  \"continued\", ,\r\n  # between\r\n0x00ff41 \"z\", last\n\nno values =\n[second]\n"
    "a=b,c;d,[e\n\n\tmessage\t= \"one\\n\"\n\t\t\"two\" 0x0D0a\n[third] ; \xC3\xA9\nx = \xC3\xA9,y";

TEST_F(ReaderTest, EveryPrefixOfAFileReadsAsItsBeginning) {
  const Events whole = read(kValidFile);
  ASSERT_EQ(whole.back(), "<y>");
  for (size_t size = 0; size < kValidFile.size(); ++size) {
    const Events part = read(kValidFile.substr(0, size));
    // The last event may be one that was cut short.
    ASSERT_LE(part.size(), whole.size() + 1);
    for (size_t i = 0; i + 1 < part.size(); ++i) EXPECT_EQ(part[i], whole[i]) << size;
  }
}

TEST_F(ReaderTest, DamagedFilesAndRandomBytesAreReadToAnEnd) {
  std::mt19937 random(20260);
  const std::string_view syntax = "[]=,\";#\\0x \t\r\n\n\nab19\xC3";
  for (int round = 0; round < 20000; ++round) {
    std::string content;
    if (round % 3 == 0) {
      content = kValidFile;
      for (unsigned flips = random() % 4; flips <= 4; ++flips) {
        content[random() % content.size()] ^= static_cast<char>(1u << (random() % 8));
      }
    } else {
      if (round % 3 == 1) content = "[s]\nk=";
      for (auto size = random() % 80; size > 0; --size) {
        content +=
            random() % 40 == 0 ? static_cast<char>(random()) : syntax[random() % syntax.size()];
      }
    }
    const Events events = read(content);
    EXPECT_LE(events.size(), content.size() + 1);
  }
}

constexpr const char* kBetweenPieces[] = {" ", "\t", "\n", " ; c\r\n\n  "};
constexpr const char* kBetweenValues[] = {",", " , ", ",\n", " , # c\n ; c\n\t"};

// Writes a text in one of the ways in which a value can be written.
std::string written(const std::string& text, std::mt19937& random) {
  const bool needs_quotes =
      text.empty() || text.find_first_of("\"\\,;# \t[") != text.npos || text.starts_with("0x");
  if (!needs_quotes && random() % 2 == 0) return text;
  std::string pieces;
  size_t done = 0;
  do {
    const size_t size = random() % 2 == 0 ? text.size() - done
                                          : std::min<size_t>(text.size() - done, 1 + random() % 3);
    const std::string part = text.substr(done, size);
    const bool in_quotes = part.empty() || (part.find('\\') == part.npos && random() % 2 == 0);
    std::string piece = in_quotes ? "\"" : "0x";
    for (const char c : part) {
      if (in_quotes) {
        piece += c == '"' ? "\"\"" : std::string(1, c);
      } else {
        const auto byte = static_cast<unsigned char>(c);
        piece += "0123456789abcdef"[byte >> 4];
        piece += "0123456789ABCDEF"[byte & 15];
      }
    }
    if (done > 0) pieces += kBetweenPieces[random() % 4];
    pieces += in_quotes ? piece + '"' : piece;
    done += size;
  } while (done < text.size());
  return pieces;
}

TEST_F(ReaderTest, WhatIsWrittenIsReadBack) {
  std::mt19937 random(415);
  const std::string_view alphabet = "ab01x\"\\,;#= \t[]\xC3\xA9.";
  for (int round = 0; round < 500; ++round) {
    std::string content;
    Events expected;
    for (unsigned section = 0; section < 3; ++section) {
      content += "[section] ; c\n\n";
      expected.push_back("[section]");
      for (unsigned entry = random() % 4; entry > 0; --entry) {
        content += " key\t=";
        expected.push_back("key=");
        const unsigned values = random() % 4;
        for (unsigned value = 0; value < values; ++value) {
          std::string text;
          for (auto size = random() % 12; size > 0; --size)
            text += alphabet[random() % alphabet.size()];
          if (value > 0) content += kBetweenValues[random() % 4];
          content += written(text, random);
          expected.push_back("<" + text + ">");
        }
        content += random() % 2 == 0 ? "\n" : " ; c\r\n";
      }
    }
    ASSERT_EQ(read(content), expected) << content;
  }
}

TEST_F(ReaderTest, AMillionLines) {
  std::string content = "[s]\n";
  for (int line = 2; line < 1000000; ++line) content += "key = \"value\", 0x4142\n";
  content += "key = \"value";
  const std::string path = scratch_.write("file", content);
  intl_reader reader;
  int32_t status = 0;
  ASSERT_GE(intl_open(path.c_str(), &reader), 0);
  ASSERT_STREQ(intl_nextsection(&reader, &status), "s");
  int32_t values = 0;
  while (intl_nextentry(&reader, &status) != nullptr) {
    while (intl_nextvalue(&reader, &status) != nullptr) ++values;
  }
  EXPECT_EQ(values, 2 * 999998);
  EXPECT_STREQ(intl_errstr(status), "line 1000000: closing quote missing");
  intl_close(&reader);
  EXPECT_EQ(read(std::string(8400000, '\n') + "[s"),
            Events{"line 8388607 or later: closing bracket of the section name missing"});
}

}  // namespace
