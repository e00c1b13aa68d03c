// The datatypes' storage sizes, and the table of the routines that convert them: which pairs it
// serves by default, and what installing and defaulting do to it.
#include "tvxcomn/dispatch.h"

#include <climits>
#include <iterator>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using Pair = std::pair<int32_t, int32_t>;
using Names = std::map<int32_t, std::string>;

TEST(Datatypes, StorageSize) {
  const std::map<int32_t, int32_t> fixed = {
      {6, 1},  {7, 2},  {8, 4},   {9, 4},   {10, 8},   {11, 1},   {12, 8}, {13, 4},
      {14, 8}, {15, 4}, {16, 35}, {17, 35}, {18, 258}, {19, 258}, {25, 2}, {27, 4},
      {28, 4}, {30, 8}, {31, 2},  {32, 4},  {33, 8},   {35, 8},   {36, 8}};
  for (int32_t code = -1; code <= 60; ++code)
    for (const int32_t maxlength : {0, 7, 100'000})
      EXPECT_EQ(fixed.contains(code) ? fixed.at(code) : maxlength, comn_typelen(code, maxlength));
}

// The names of the routines of every served pair.
std::map<Pair, std::string> served_pairs() {
  const Names scaled = {{14, "money"}, {15, "mny4"}, {16, "num"}, {17, "num"}};
  const Names texts = {{0, "char"}, {2, "char"}, {4, "char"}, {18, "varchar"}};
  const Names binaries = {{1, "bin"}, {3, "bin"}, {5, "bin"}, {19, "varbin"}};
  Names numbers = {{6, "i1"},  {7, "i2"},  {8, "i4"},   {9, "flt4"}, {10, "flt8"}, {11, "bit"},
                   {20, "i8"}, {30, "i8"}, {31, "ui2"}, {32, "ui4"}, {33, "ui8"}};
  numbers.insert(scaled.begin(), scaled.end());
  std::map<Pair, std::string> pairs;
  const auto serve = [&](const Names& sources, const Names& destinations) {
    for (const auto& [source, from] : sources)
      for (const auto& [destination, to] : destinations)
        pairs[{source, destination}] = "comn_" + from + "to" + to;
  };
  serve(numbers, numbers);
  serve(numbers, texts);
  serve(texts, numbers);
  serve(numbers, binaries);
  serve(binaries, numbers);
  serve(binaries, {{12, "datetime"}, {13, "date4"}, {27, "datea"}, {28, "timea"}});
  serve(binaries, {{35, "bigdatetime"}, {36, "bigtime"}});
  serve(binaries, binaries);
  for (const int32_t own : {21, 22, 34}) {  // the other char codes know each other as little
    const Names rare = {{own, "char"}}, common = {{0, "char"}, {2, "char"}, {4, "char"}};
    serve(texts, rare);
    serve(rare, common);
    serve(rare, rare);
    serve(rare, {{18, "varchar"}});
  }
  serve(texts, texts);
  serve(texts, binaries);
  serve(binaries, texts);
  serve({{34, "char"}}, binaries);
  serve(binaries, {{34, "char"}});
  for (const int32_t locator : {37, 38, 39}) {
    serve({{0, "char"}}, {{locator, "locator"}});
    serve({{locator, "locator"}}, {{0, "char"}, {locator, "locator"}});
  }
  serve({{37, "locator"}}, {{4, "text"}});
  serve({{38, "locator"}}, {{5, "image"}});
  serve({{12, "date"}, {13, "date4"}, {27, "datea"}, {28, "timea"}, {35, "date"}, {36, "timea"}},
        texts);
  serve(texts, {{12, "datetime"},
                {13, "date4"},
                {27, "datea"},
                {28, "timea"},
                {35, "datetime"},
                {36, "timea"}});
  const Names dates = {{12, "date"},  {13, "date4"},       {27, "datea"},
                       {28, "timea"}, {35, "bigdatetime"}, {36, "bigtime"}};
  serve(dates, dates);
  serve(dates, {{19, "varbin"}});
  for (const Pair& pair : {Pair{27, 28}, {28, 27}, {27, 36}, {36, 27}}) pairs.erase(pair);
  // Few take an int20.
  for (const int32_t destination : {6, 7, 9, 10, 11, 14, 15, 0, 2, 4, 18, 1, 3, 5, 19})
    pairs.erase({20, destination});
  for (const int32_t money : {14, 15}) pairs.erase({11, money});
  for (int32_t destination = 0; destination <= 36; ++destination)
    pairs[{23, destination}] = "from null";
  return pairs;
}

TEST(DefaultTable, EveryPair) {
  comn_context* const context = shared_context();
  const auto pairs = served_pairs();
  std::map<std::string, comn_conversion*> routines;
  EXPECT_EQ(40u, context->conversion_dimension);
  for (int32_t source = 0; source < 40; ++source)
    for (int32_t destination = 0; destination < 40; ++destination) {
      comn_conversion* const routine = com_conv_func(context, source, destination);
      const auto pair = pairs.find({source, destination});
      EXPECT_EQ(context->conversions[source * 40 + destination], routine);
      EXPECT_EQ(pair != pairs.end(), routine != nullptr) << source << " to " << destination;
      if (pair == pairs.end()) continue;
      // Those from unsigned numbers, with big dates and from null are not exported, but one each.
      auto* expected = exported<comn_conversion>(pair->second);
      if (expected == nullptr) expected = routines.try_emplace(pair->second, routine).first->second;
      EXPECT_EQ(expected, routine) << pair->second << ", " << source << " to " << destination;
    }
  EXPECT_EQ(3 * 17 + 20 + 4 + 3 + 1, routines.size());
}

// An entry of the overflow list, as the interface lays it out.
struct OverflowEntry {
  int32_t source, destination;
  comn_conversion* routine;
  const OverflowEntry *next_of_source, *next_source;
};

// The pairs of the overflow list in its order.
std::vector<Pair> overflow_order(const comn_context& context) {
  std::vector<Pair> pairs;
  const auto* row = static_cast<const OverflowEntry*>(context.conversion_overflow);
  for (; row != nullptr; row = row->next_source)
    for (const OverflowEntry* entry = row; entry != nullptr; entry = entry->next_of_source)
      pairs.emplace_back(entry->source, entry->destination);
  return pairs;
}

TEST(Routines, RandomUseAgreesWithAMap) {
  const Context owner = open_context();
  comn_context* const context = owner.get();
  const int32_t codes[] = {0, 6, 8, 11, 23, 24, 39, 40, 41, 45, 1'000, INT_MAX};
  comn_conversion* const others[] = {comn_bittovarbin, comn_flt4tovarchar, nullptr};
  std::map<Pair, comn_conversion*> routines;  // of the pairs that were changed
  std::vector<Pair> order;                    // of the overflow list
  std::mt19937 random(20'240'607);
  const auto pick = [&](const auto& list) { return list[random() % std::size(list)]; };
  for (int step = 0; step < 20'000; ++step) {
    const int32_t source = pick(codes), destination = pick(codes);
    const Pair pair(source, destination);
    const bool overflow = source >= 40 || destination >= 40, known = routines.contains(pair);
    comn_conversion* const initial = com_conv_func(shared_context(), source, destination);
    switch (random() % 4) {
      case 0:
        routines[pair] = pick(others);
        ASSERT_EQ(CS_SUCCEED, com_conv_install(context, source, destination, routines[pair]));
        if (overflow && !known) {
          // Behind the last pair of the same source, or else as a new row at the end.
          const auto row = std::find_if(order.rbegin(), order.rend(),
                                        [&](const Pair& p) { return p.first == source; });
          order.insert(row == order.rend() ? order.end() : row.base(), pair);
        }
        break;
      case 1:
        ASSERT_EQ(CS_SUCCEED, com_conv_default(context, source, destination));
        if (known) routines[pair] = initial;
        break;
      default:
        ASSERT_EQ(known ? routines[pair] : initial, com_conv_func(context, source, destination))
            << source << " to " << destination << " at step " << step;
    }
  }
  EXPECT_EQ(order, overflow_order(*context));
  for (const auto& [source, destination] : {Pair{-1, 0}, {0, -1}, {-1, 45}, {45, INT_MIN}})
    EXPECT_EQ(nullptr, com_conv_func(context, source, destination));
  for (const auto& [source, destination] : {Pair{45, 7}, {50, 3}}) {
    const FailingHeap heap(1);
    EXPECT_EQ(CS_MEM_ERROR, com_conv_install(context, source, destination, comn_bittovarbin));
    EXPECT_EQ(order, overflow_order(*context)) << "nothing is changed";
  }
}

}  // namespace
}  // namespace tvx::test
