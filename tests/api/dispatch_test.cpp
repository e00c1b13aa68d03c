// The table of conversion routines: which pairs it serves, and what installing, defaulting and
// freeing do to it. The expected table is written down by hand, from the datatypes' point of view.
#include "tvxcomn/dispatch.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <climits>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support/failing_heap.hpp"
#include "tvxcomn/context.h"
#include "tvxcomn/null.h"
#include "tvxcomn/numbertext.h"
#include "tvxcomn/scalar.h"

namespace {

using testing::KilledBySignal;
using tvx::test::FailingHeap;
using tvx::test::live_blocks;
using Codes = std::vector<int32_t>;
using Pair = std::pair<int32_t, int32_t>;

const char* const kAssertion = "assertion failed, file '.+' line [0-9]+";

// A context with nothing but a routine table.
struct Context : comn_context {
  Context() : comn_context{} { EXPECT_EQ(CS_SUCCEED, com_conv_init(this)); }
  ~Context() { EXPECT_EQ(CS_SUCCEED, com_conv_free(this)); }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
};

// ---- The default table -------------------------------------------------------------------------

const Codes kNumbers = {6, 7, 8, 9, 10, 11, 20, 30, 31, 32, 33};
const Codes kUnsigned = {31, 32, 33};
const Codes kCharacters = {0, 2, 4, 18};

#define TVX_TO_NUMBERS(source)                                                               \
  comn_##source##toi1, comn_##source##toi2, comn_##source##toi4, comn_##source##toflt4,      \
      comn_##source##toflt8, comn_##source##tobit, comn_##source##toi8, comn_##source##toi8, \
      comn_##source##toui2, comn_##source##toui4, comn_##source##toui8
#define TVX_TO_CHARACTERS(source) \
  comn_##source##tochar, comn_##source##tochar, comn_##source##tochar, comn_##source##tovarchar

struct Row {
  Codes sources;
  Codes destinations;
  std::vector<comn_conversion*> routines;  // by destination; empty: some routine of the library
};

const Row kRows[] = {
    {{6}, kNumbers, {TVX_TO_NUMBERS(i1)}},
    {{6}, kCharacters, {TVX_TO_CHARACTERS(i1)}},
    {{7}, kNumbers, {TVX_TO_NUMBERS(i2)}},
    {{7}, kCharacters, {TVX_TO_CHARACTERS(i2)}},
    {{8}, kNumbers, {TVX_TO_NUMBERS(i4)}},
    {{8}, kCharacters, {TVX_TO_CHARACTERS(i4)}},
    {{9}, kNumbers, {TVX_TO_NUMBERS(flt4)}},
    {{9}, kCharacters, {TVX_TO_CHARACTERS(flt4)}},
    {{10}, kNumbers, {TVX_TO_NUMBERS(flt8)}},
    {{10}, kCharacters, {TVX_TO_CHARACTERS(flt8)}},
    {{11}, kNumbers, {TVX_TO_NUMBERS(bit)}},
    {{11}, kCharacters, {TVX_TO_CHARACTERS(bit)}},
    {{30}, kNumbers, {TVX_TO_NUMBERS(i8)}},
    {{30}, kCharacters, {TVX_TO_CHARACTERS(i8)}},
    {kUnsigned, kNumbers, {}},
    {kUnsigned, kCharacters, {}},
    {{0, 2, 4}, kNumbers, {TVX_TO_NUMBERS(char)}},
    {{18}, kNumbers, {TVX_TO_NUMBERS(varchar)}},
    {{20},
     {8, 20, 30, 31, 32, 33},
     {comn_i8toi4, comn_i8toi8, comn_i8toi8, comn_i8toui2, comn_i8toui4, comn_i8toui8}},
    {{11}, {1, 3, 5, 19}, {comn_bittobin, comn_bittobin, comn_bittobin, comn_bittovarbin}}};

// The routine of every served pair; null stands for one that is not exported.
std::map<Pair, comn_conversion*> served_pairs() {
  std::map<Pair, comn_conversion*> pairs;
  for (const auto& [sources, destinations, routines] : kRows)
    for (const int32_t source : sources)
      for (size_t i = 0; i < destinations.size(); ++i)
        pairs[{source, destinations[i]}] = routines.empty() ? nullptr : routines[i];
  for (int32_t destination = 0; destination <= 36; ++destination)
    pairs[{TVX_TYPE_NULL23, destination}] = nullptr;
  return pairs;
}

TEST(DefaultTable, EveryPair) {
  Context context;
  const auto pairs = served_pairs();
  EXPECT_EQ(40u, context.conversion_dimension);
  for (int32_t source = 0; source < 40; ++source) {
    for (int32_t destination = 0; destination < 40; ++destination) {
      comn_conversion* const routine = com_conv_func(&context, source, destination);
      const auto pair = pairs.find({source, destination});
      const std::string name = std::to_string(source) + " -> " + std::to_string(destination);
      EXPECT_EQ(context.conversions[source * 40 + destination], routine) << name;
      EXPECT_EQ(pair != pairs.end(), routine != nullptr) << name;
      if (pair != pairs.end() && pair->second != nullptr) {
        EXPECT_EQ(pair->second, routine) << name;
      }
    }
  }
}

using Outcome = std::tuple<int32_t, int32_t, std::string>;  // result, length, destination

const std::string kUntouched(300, '.');

comn_datafmt format_of(int32_t datatype, int32_t maxlength, uint32_t flags = 0) {
  comn_datafmt format{};
  format.datatype = datatype;
  format.maxlength = maxlength;
  format.format = flags;
  format.precision = 10;
  format.scale = 2;
  return format;
}

Outcome convert(Context& context, int32_t source, const void* value, const comn_datafmt& to) {
  const comn_datafmt from = format_of(source, 8);
  std::string bytes = kUntouched;
  int32_t length = -1;
  const int32_t result = com_conv_func(&context, source, to.datatype)(&context, &from, value, &to,
                                                                      bytes.data(), &length);
  return {result, length, bytes};
}

// The unsigned sources' routines are not exported: each must be its own source's, and agree with
// the i4 routines on a value that all of them hold.
TEST(DefaultTable, UnsignedSources) {
  Context context;
  const uint64_t unsigned_value = 200;
  const int32_t value = 200;
  Codes destinations = kNumbers;
  destinations.insert(destinations.end(), kCharacters.begin(), kCharacters.end());
  for (const int32_t destination : destinations) {
    const comn_datafmt to = format_of(destination, 8, CS_FORMAT_TERMINATE);
    const Outcome expected = convert(context, TVX_TYPE_I4, &value, to);
    for (const int32_t source : kUnsigned) {
      EXPECT_EQ(expected, convert(context, source, &unsigned_value, to))
          << source << " -> " << destination;
    }
  }
  const comn_datafmt i4 = format_of(TVX_TYPE_I4, 4);
  int32_t out, length;
  for (const int32_t source : kUnsigned)
    EXPECT_EXIT(
        com_conv_func(&context, source, TVX_TYPE_I4)(&context, &i4, &value, &i4, &out, &length),
        KilledBySignal(SIGABRT), kAssertion);
}

TEST(DefaultTable, Null23DeliversTheNullValue) {
  Context context;
  ASSERT_EQ(CS_SUCCEED, com_null_init(&context));
  ASSERT_EQ(CS_SUCCEED, com_null_set(&context, TVX_TYPE_I4, "\xFF\xFE\xFD\xFC", 4));
  ASSERT_EQ(CS_SUCCEED, com_null_set(&context, TVX_TYPE_TEXT, "NULL", 4));
  for (int32_t code = 0; code <= 36; ++code) {
    if (code == TVX_TYPE_NULL23) continue;
    for (uint32_t flags = 0; flags < 8; ++flags) {
      for (const int32_t maxlength : {0, 3, 10, 300}) {
        // The storage size of unichar is that of a unit, more than there is room for.
        if (code == TVX_TYPE_UNICHAR && maxlength == 0) continue;
        const comn_datafmt to = format_of(code, maxlength, flags);
        std::string bytes = kUntouched;
        int32_t length = -1;
        const int32_t result =
            com_null_get(&context, &to, bytes.data(), comn_typelen(code, maxlength), &length);
        EXPECT_EQ(Outcome(result, length, bytes), convert(context, TVX_TYPE_NULL23, "", to))
            << "datatype " << code << " flags " << flags << " maxlength " << maxlength;
      }
    }
  }
  const auto from_null = [&](int32_t code, int32_t maxlength) {
    return convert(context, TVX_TYPE_NULL23, "", format_of(code, maxlength));
  };
  EXPECT_EQ(Outcome(CS_SUCCEED, 4, "\xFF\xFE\xFD\xFC" + kUntouched.substr(4)),
            from_null(TVX_TYPE_I4, 0));
  EXPECT_EQ(kUntouched, std::get<2>(from_null(TVX_TYPE_UNICHAR, 0)));
  const Outcome none = from_null(TVX_TYPE_NULL23, 10);
  EXPECT_EQ(CS_SUCCEED, std::get<0>(none));
  EXPECT_EQ(kUntouched, std::get<2>(none));
  EXPECT_EQ(CS_SUCCEED, com_null_free(&context));
}

// ---- Changes -----------------------------------------------------------------------------------

template <int32_t number>
int32_t fake(comn_context*, const comn_datafmt*, const void*, const comn_datafmt*, void*,
             int32_t*) {
  return number;
}

comn_conversion* const kFakes[] = {fake<1>, fake<2>, fake<3>, nullptr};

// An entry of the overflow list, as the interface lays it out.
struct OverflowEntry {
  int32_t source;
  int32_t destination;
  comn_conversion* routine;
  const OverflowEntry* next_of_source;
  const OverflowEntry* next_source;
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
  Context context, untouched;
  const int32_t codes[] = {0, 6, 8, 11, 23, 24, 39, 40, 41, 45, 1'000, INT_MAX};
  std::map<Pair, comn_conversion*> reference;
  for (int32_t source = 0; source < 40; ++source)
    for (int32_t destination = 0; destination < 40; ++destination)
      reference[{source, destination}] = com_conv_func(&untouched, source, destination);
  const auto defaults = reference;
  std::vector<std::pair<int32_t, Codes>> rows;  // overflow entries by first installation

  std::mt19937 random(20'240'607);
  const auto pick = [&](const auto& list) { return list[random() % std::size(list)]; };
  for (int step = 0; step < 20'000; ++step) {
    const Pair pair = {pick(codes), pick(codes)};
    const bool overflow = pair.first >= 40 || pair.second >= 40;
    switch (random() % 4) {
      case 0: {
        comn_conversion* const routine = pick(kFakes);
        ASSERT_EQ(CS_SUCCEED, com_conv_install(&context, pair.first, pair.second, routine));
        if (overflow && !reference.contains(pair)) {
          auto row = rows.begin();
          while (row != rows.end() && row->first != pair.first) ++row;
          if (row == rows.end()) row = rows.insert(row, {pair.first, {}});
          row->second.push_back(pair.second);
        }
        reference[pair] = routine;
        break;
      }
      case 1:
        ASSERT_EQ(CS_SUCCEED, com_conv_default(&context, pair.first, pair.second));
        if (!overflow) {
          reference[pair] = defaults.at(pair);
        } else if (reference.contains(pair)) {
          reference[pair] = nullptr;
        }
        break;
      default: {
        const auto found = reference.find(pair);
        ASSERT_EQ(found == reference.end() ? nullptr : found->second,
                  com_conv_func(&context, pair.first, pair.second))
            << pair.first << " -> " << pair.second << " at step " << step;
      }
    }
  }
  std::vector<Pair> order;
  for (const auto& [source, destinations] : rows)
    for (const int32_t destination : destinations) order.emplace_back(source, destination);
  EXPECT_EQ(order, overflow_order(context));
  for (const Pair& pair : {Pair{-1, 0}, {0, -1}, {-1, 45}, {45, INT_MIN}, {-1, -1}})
    EXPECT_EQ(nullptr, com_conv_func(&context, pair.first, pair.second));
}

TEST(Routines, FreeReleasesEverythingAndInitStartsAgain) {
  const long before = live_blocks();
  comn_context context{};
  EXPECT_EQ(CS_SUCCEED, com_conv_free(&context)) << "nothing to free";
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(CS_SUCCEED, com_conv_init(&context));
    EXPECT_EQ(comn_i4toi1, com_conv_func(&context, 8, 6));
    EXPECT_EQ(nullptr, com_conv_func(&context, 45, 3)) << "the overflow list starts empty";
    for (const Pair& pair : {Pair{45, 3}, {45, 7}, {50, 3}, {8, 6}, {3, 45}})
      EXPECT_EQ(CS_SUCCEED, com_conv_install(&context, pair.first, pair.second, fake<1>));
    EXPECT_EQ(CS_SUCCEED, com_conv_free(&context));
    EXPECT_EQ(nullptr, context.conversions);
    EXPECT_EQ(0u, context.conversion_dimension);
    EXPECT_EQ(nullptr, context.conversion_overflow);
    EXPECT_EQ(before, live_blocks());
  }
}

TEST(Routines, OutOfMemory) {
  const long before = live_blocks();
  comn_context unset{};
  long nth = 1;
  for (int32_t result = CS_MEM_ERROR; result == CS_MEM_ERROR; ++nth) {
    const FailingHeap heap(nth);
    result = com_conv_init(&unset);
    EXPECT_EQ(result == CS_MEM_ERROR, unset.conversions == nullptr);
    EXPECT_EQ(result == CS_MEM_ERROR, before == live_blocks());
  }
  EXPECT_GT(nth, 2);
  EXPECT_EQ(CS_SUCCEED, com_conv_free(&unset));

  Context context;
  ASSERT_EQ(CS_SUCCEED, com_conv_install(&context, 45, 3, fake<1>));
  for (const Pair& pair : {Pair{45, 7}, {50, 3}}) {
    const FailingHeap heap(1);
    EXPECT_EQ(CS_MEM_ERROR, com_conv_install(&context, pair.first, pair.second, fake<2>));
    EXPECT_EQ(std::vector<Pair>({{45, 3}}), overflow_order(context));
  }
  const FailingHeap heap(1);
  EXPECT_EQ(CS_SUCCEED, com_conv_install(&context, 45, 3, fake<3>)) << "replaced in place";
  EXPECT_EQ(CS_SUCCEED, com_conv_install(&context, 8, 6, fake<3>));
  EXPECT_EQ(CS_SUCCEED, com_conv_default(&context, 45, 8));
  EXPECT_EQ(fake<3>, com_conv_func(&context, 45, 3));
  EXPECT_EQ(0, heap.calls());
}

TEST(Routines, BrokenUsageIsFatal) {
  static Context context;
  static comn_context unset{};
  void (*const null_pointers[])() = {
      [] { com_conv_init(nullptr); }, [] { com_conv_func(nullptr, 0, 6); },
      [] { com_conv_install(nullptr, 0, 6, fake<1>); }, [] { com_conv_default(nullptr, 0, 6); },
      [] { com_conv_free(nullptr); }};
  void (*const assertions[])() = {
      [] { com_conv_install(&context, -1, 6, fake<1>); },
      [] { com_conv_install(&unset, 45, 6, fake<1>); }, [] { com_conv_default(&context, 0, -1); },
      [] { com_conv_default(&unset, 0, 6); }, [] { com_conv_func(&unset, 0, 6); }};
  for (const auto& call : null_pointers)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), "Invalid NULL pointer , file '.+' line [0-9]+")
        << &call - null_pointers;
  for (const auto& call : assertions)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), kAssertion) << &call - assertions;
}

}  // namespace
