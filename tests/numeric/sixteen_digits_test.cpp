// Sixteen digits at a time, in both forms, against the characters one by one.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "numeric/sixteen_digits.hpp"

namespace {

using namespace tvx::numeric;

template <class Digits>
class SixteenDigitsTest : public testing::Test {};

#ifdef __SSE2__
using Forms = testing::Types<SixteenDigitsInWords, SixteenDigitsInVector>;
#else
using Forms = testing::Types<SixteenDigitsInWords>;
#endif
TYPED_TEST_SUITE(SixteenDigitsTest, Forms);

size_t leading_digits(const std::string& text) {
  return std::min(text.find_first_not_of("0123456789"), text.size());
}

TYPED_TEST(SixteenDigitsTest, AreTheCharacters) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 200'000; ++round) {
    // Mostly digits; any other byte may be among them, its neighbours in the code above all.
    std::string text;
    for (size_t i = 0; i < 17; ++i)
      text += random() % 32 != 0  ? static_cast<char>('0' + random() % 10)
              : random() % 2 == 0 ? "/:\x80\xFF."[random() % 5]
                                  : static_cast<char>(random());
    const std::string first = text.substr(0, 16);
    const std::string second = text.substr(1);
    const auto digits = TypeParam::load(first.data());
    ASSERT_EQ(digits.leading_digits(), leading_digits(first)) << first;
    ASSERT_EQ(digits.are_digits(), leading_digits(first) == 16) << first;

    const size_t count = random() % 17;
    const auto others = TypeParam::load(second.data());
    const auto expect = [&](const TypeParam& made, const std::string& characters) {
      ASSERT_EQ(made.leading_digits(), leading_digits(characters)) << text << ' ' << count;
      if (made.are_digits()) {
        ASSERT_EQ(made.value(), std::stoull(characters)) << text << ' ' << count;
      }
    };
    expect(digits, first);
    expect(digits.last(count), std::string(16 - count, '0') + first.substr(16 - count));
    expect(digits.joined(others, count), first.substr(0, 16 - count) + second.substr(16 - count));
    expect(digits.moved_back(), "0" + first.substr(0, 15));
  }
}

TYPED_TEST(SixteenDigitsTest, OfANumber) {
  constexpr uint64_t limit = 10'000'000'000'000'000;
  const auto expect = [](uint64_t value) {
    char text[17] = {};
    TypeParam::of(value).store(text);
    const std::string expected = std::to_string(limit + value).substr(1);
    ASSERT_EQ(text, expected);
    ASSERT_EQ(TypeParam::of(value).value(), value);
    ASSERT_EQ(TypeParam::of(value).significant_digits(), expected.find_last_not_of('0') + 1);
  };
  for (uint64_t four = 0; four < 10'000; ++four)  // each in every place
    for (const uint64_t unit :
         {uint64_t{1}, limit / 1'000'000'000'000, limit / 100'000'000, limit / 10'000})
      expect(four * unit);
  std::mt19937_64 random(7);
  for (int round = 0; round < 100'000; ++round) expect(random() % limit);
  expect(limit - 1);
}

TYPED_TEST(SixteenDigitsTest, TheLastOfATextStandInItsEnd) {
  for (size_t size = 0; size <= 40; ++size) {
    const auto text = std::make_unique<char[]>(size);  // no byte more
    for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>('0' + (i * 7 + 3) % 10);
    const std::string_view view(text.get(), size);
    const auto last = load_last_sixteen<TypeParam>(view);
    const size_t count = std::min<size_t>(size, 16);
    const std::string expected = "0" + std::string(view.substr(size - count));
    ASSERT_EQ(last.last(count).value(), std::stoull(expected)) << size;
    ASSERT_EQ(last.are_digits(), size >= 16) << size;
  }
}

}  // namespace
