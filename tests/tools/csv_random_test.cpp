// tvxcomn csv against a slow reader of CSV that looks at one byte at a time, over random bytes; and
// the shipped sample, with the arguments that its description gives.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "tools/run_command.hpp"

namespace {

using tvx::test::Outcome;
using tvx::test::run_command;
using tvx::test::ScratchDirectory;

struct ReferenceRow {
  std::string raw;
  std::vector<std::string> raw_fields;
  std::vector<std::string> values;
  std::string line_end;
  bool well_formed = true;
};

// Reads the row that begins at `at` and moves `at` behind it.
ReferenceRow read_row(const std::string& text, std::size_t& at) {
  ReferenceRow row;
  const std::size_t begin = at;
  const auto at_row_end = [&] {
    return at == text.size() || text[at] == '\n' || text.compare(at, 2, "\r\n") == 0;
  };
  for (;;) {
    const std::size_t field_begin = at;
    std::string value;
    if (at < text.size() && text[at] == '"') {
      ++at;
      for (; at < text.size(); ++at) {
        if (text[at] == '"' && text.compare(at, 2, "\"\"") != 0) break;
        if (text[at] == '"') ++at;
        value += text[at];
      }
      row.well_formed = row.well_formed && at < text.size();
      if (at < text.size()) ++at;
      row.well_formed = row.well_formed && (at_row_end() || text[at] == ',');
    }
    while (!at_row_end() && text[at] != ',') value += text[at++];
    row.values.push_back(value);
    row.raw_fields.push_back(text.substr(field_begin, at - field_begin));
    if (at_row_end()) break;
    ++at;
  }
  if (at < text.size()) row.line_end = text[at] == '\n' ? "\n" : "\r\n";
  at += row.line_end.size();
  row.raw = text.substr(begin, at - begin);
  return row;
}

// Of the random fields, only runs of up to three sevens are numbers, and they come out as they went
// in.
bool acceptable(const std::string& value) {
  return value.size() <= 4 && value.find_first_not_of('7') == std::string::npos;
}

struct Sorted {
  std::string written;
  std::string rejected;
};

Sorted sort_rows(const std::string& text, std::size_t fields, std::size_t row_limit) {
  Sorted sorted;
  for (std::size_t at = 0; at < text.size();) {
    const ReferenceRow row = read_row(text, at);
    const bool good = row.well_formed && row.raw.size() <= row_limit &&
                      row.values.size() == fields &&
                      std::all_of(row.values.begin(), row.values.end(), acceptable);
    if (!good) {
      sorted.rejected += row.raw;
      continue;
    }
    for (std::size_t field = 0; field < fields; ++field) {
      if (field != 0) sorted.written += ',';
      const std::string& value = row.values[field];
      sorted.written += value.empty() ? row.raw_fields[field] : value;
    }
    sorted.written += row.line_end;
  }
  return sorted;
}

// Pieces of rows, most of them sound, so that quotes close again before long.
std::string random_text(unsigned seed, std::size_t size) {
  static const char* const kPieces[] = {
      "7",  "77",   "777",  "\"7\"", "\"77\"", "\"\"",         ",",  ",",       ",", ",", ",", "\n",
      "\n", "\r\n", "\r\n", "\"",    "x",      "\"a\n,\"\"\"", "\r", "\"\"\"\""};
  std::mt19937 random(seed);
  std::string text;
  while (text.size() < size) text += kPieces[random() % std::size(kPieces)];
  return text;
}

TEST(CsvRandom, AgreesWithASlowReader) {
  struct Setup {
    unsigned seed;
    std::size_t size;
    std::size_t row_limit;
  };
  const Setup setups[] = {{1, 2, 100},           {2, 20, 100},     {3, 3000, 1 << 20},
                          {4, 1200000, 1 << 20}, {5, 1200000, 12}, {6, 1200000, 300}};
  for (const Setup& setup : setups) {
    const std::string text = random_text(setup.seed, setup.size);
    const Sorted expected = sort_rows(text, 2, setup.row_limit);
    const ScratchDirectory scratch;
    const Outcome outcome = run_command(
        {"csv", "--types", "a:i2,b:i2", "--row-limit", std::to_string(setup.row_limit), "--output",
         scratch.path("out"), "--rejects", scratch.path("bad"), scratch.write("in", text)});
    EXPECT_TRUE(scratch.read("out") == expected.written) << setup.seed;
    EXPECT_TRUE(scratch.read("bad") == expected.rejected) << setup.seed;
    EXPECT_EQ(outcome.status, expected.rejected.empty() ? 0 : 1);
  }
}

constexpr char kSample[] = TVX_SOURCE_DIR "/examples/shipments.csv";

std::string file_contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string sample_types() {
  const std::string description = file_contents(TVX_SOURCE_DIR "/examples/README.md");
  const std::string option = "tvxcomn csv --types '";
  const std::size_t begin = description.find(option) + option.size();
  return description.substr(begin, description.find('\'', begin) - begin);
}

std::size_t count_rows(const std::string& text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) static_cast<void>(read_row(text, at));
  return count;
}

TEST(CsvSample, LosesNothingAndTypedRowsStayAsTheyAre) {
  const ScratchDirectory scratch;
  const Outcome first =
      run_command({"csv", "--types", sample_types(), "--output", scratch.path("typed"), "--rejects",
                   scratch.path("bad"), kSample});
  EXPECT_EQ(first.status, 1);
  EXPECT_NE(first.output.find("columns by name"), std::string::npos);

  const std::string input = file_contents(kSample);
  const std::string rejects = scratch.read("bad");
  EXPECT_GT(count_rows(input), 3000u);
  EXPECT_EQ(count_rows(scratch.read("typed")) + count_rows(rejects), count_rows(input));
  for (std::size_t at = 0; at < rejects.size();) {
    EXPECT_NE(input.find(read_row(rejects, at).raw), std::string::npos);
  }

  const Outcome again = run_command(
      {"csv", "--types", sample_types(), "--output", scratch.path("again"), scratch.path("typed")});
  EXPECT_EQ(again.status, 0) << again.output;
  EXPECT_TRUE(scratch.read("again") == scratch.read("typed"));
}

// Every field of a row with the right number of fields is counted once.
TEST(CsvSample, CountsAddUp) {
  const Outcome outcome =
      run_command({"csv", "--types", sample_types(), "--output", "/dev/null", kSample});
  std::istringstream report(outcome.output);
  std::vector<uint64_t> sums;
  for (std::string line; std::getline(report, line);) {
    std::istringstream words(line);
    std::string name;
    std::string type;
    uint64_t converted = 0;
    uint64_t empty = 0;
    uint64_t failed = 0;
    if (words >> name >> type >> converted >> empty >> failed)
      sums.push_back(converted + empty + failed);
  }
  ASSERT_GE(sums.size(), 13u);
  EXPECT_EQ(std::count(sums.begin(), sums.end(), sums.front()), static_cast<long>(sums.size()));
}

}  // namespace
