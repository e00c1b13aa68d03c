// Numbers written as text and read from text.
#include "tvxcomn/numbertext.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <functional>

#include "conversion.hpp"
#include "peers/peers.hpp"
#include "suite.hpp"
#include "tvxcomn/dispatch.h"

namespace tvx::bench {
namespace {

// ---- Values ------------------------------------------------------------------------------------

// Numbers of 1 to 10 digits, each length as likely as the other.
std::vector<int32_t> integers_of_all_lengths() {
  return random_values([](auto& generator) {
    const double digits = std::uniform_real_distribution(0.0, 9.3)(generator);
    const auto magnitude = static_cast<int32_t>(std::pow(10.0, digits));
    return generator() % 2 == 0 ? magnitude : -magnitude;
  });
}

// Uniform over the bit patterns of finite doubles.
std::vector<double> doubles() {
  return random_values([](auto& generator) {
    double value;
    do {
      value = std::bit_cast<double>(static_cast<uint64_t>(generator()));
    } while (!std::isfinite(value));
    return value;
  });
}

// Amounts from 0.00 to 9999.99.
std::vector<double> prices() {
  return random_values(
      [](auto& generator) { return static_cast<double>(generator() % 1'000'000) / 100.0; });
}

template <class Number, class... Format>
std::vector<Text> texts(const std::vector<Number>& values, Format... format) {
  std::vector<Text> result;
  for (const Number value : values) {
    Text& text = result.emplace_back();
    const auto end = std::to_chars(text.bytes, text.bytes + Text::kCapacity, value, format...).ptr;
    text.length = static_cast<int32_t>(end - text.bytes);
  }
  return result;
}

// ---- Ours --------------------------------------------------------------------------------------

// `source` is the datatype code of Number.
template <class Number>
auto writer(comn_conversion* routine, int32_t source) {
  return [=, in = format_of(source, 0), out = format_of(TVX_TYPE_CHAR, Text::kCapacity),
          conversion_context = context()](const Number& value) {
    Text text;
    routine(conversion_context, &in, &value, &out, text.bytes, &text.length);
    return text;
  };
}

// `destination` is the datatype code of Number.
template <class Number>
auto reader(comn_conversion* routine, int32_t destination) {
  return [=, in = format_of(TVX_TYPE_CHAR, 0), out = format_of(destination, 0),
          conversion_context = context()](const Text& text) mutable {
    Number value;
    int32_t length;
    in.maxlength = text.length;
    const int32_t code = routine(conversion_context, &in, text.bytes, &out, &value, &length);
    return code == CS_SUCCEED ? value : Number{};
  };
}

// ---- Peers -------------------------------------------------------------------------------------

template <class Number>
auto std_writer() {
  return Peer{"std::to_chars", [](Number value) {
                Text text;
                text.length = peers::std_to_chars(value, text.bytes, Text::kCapacity);
                return text;
              }};
}

template <class Number>
auto std_reader() {
  return Peer{"std::from_chars", [](const Text& text) {
                Number value;
                return peers::std_from_chars(text.bytes, text.length, value) ? value : Number{};
              }};
}

auto fast_float_reader() {
  return Peer{"fast_float", [](const Text& text) {
                double value;
                return peers::fast_float_from_chars(text.bytes, text.length, value) ? value : 0.0;
              }};
}

// ---- Agreement ---------------------------------------------------------------------------------

// A float's digits as far as the library and C spell them alike: without a single zero before the
// point and without ".0" at the end.
std::string common_spelling(const Text& text) {
  std::string spelling(text.view());
  const size_t first = spelling.starts_with('-') ? 1 : 0;
  if (spelling.compare(first, 2, "0.") == 0) spelling.erase(first, 1);
  if (spelling.ends_with(".0")) spelling.resize(spelling.size() - 2);
  return spelling;
}

bool same_float_text(const Text& ours, const Text& theirs) {
  return common_spelling(ours) == common_spelling(theirs);
}

}  // namespace

void compare_number_text(Suite& suite) {
  const std::equal_to<> same;
  constexpr auto kScientific = std::chars_format::scientific;
  constexpr auto kFixed = std::chars_format::fixed;
  const auto i4_to_char = writer<int32_t>(comn_i4tochar, TVX_TYPE_I4);
  const auto i8_to_char = writer<int64_t>(comn_i8tochar, TVX_TYPE_I8);
  const auto ui4_to_char =
      writer<uint32_t>(com_conv_func(context(), TVX_TYPE_UI4, TVX_TYPE_CHAR), TVX_TYPE_UI4);
  const auto flt8_to_char = writer<double>(comn_flt8tochar, TVX_TYPE_FLT8);
  const auto char_to_i4 = reader<int32_t>(comn_chartoi4, TVX_TYPE_I4);
  const auto char_to_i8 = reader<int64_t>(comn_chartoi8, TVX_TYPE_I8);
  const auto char_to_flt8 = reader<double>(comn_chartoflt8, TVX_TYPE_FLT8);

  suite.compare({"i4 to char", 1.0}, random_integers<int32_t>(), same, i4_to_char,
                std_writer<int32_t>());
  suite.compare({"i4 to char, all lengths", kInformative}, integers_of_all_lengths(), same,
                i4_to_char, std_writer<int32_t>());
  suite.compare({"i8 to char", kInformative}, random_integers<int64_t>(), same, i8_to_char,
                std_writer<int64_t>());
  suite.compare({"ui4 to char", kInformative}, random_integers<uint32_t>(), same, ui4_to_char,
                std_writer<uint32_t>());
  suite.compare({"char to i4", 1.0}, texts(random_integers<int32_t>()), same, char_to_i4,
                std_reader<int32_t>());
  suite.compare({"char to i4, all lengths", kInformative}, texts(integers_of_all_lengths()), same,
                char_to_i4, std_reader<int32_t>());
  suite.compare({"char to i8", kInformative}, texts(random_integers<int64_t>()), same, char_to_i8,
                std_reader<int64_t>());
  suite.compare({"flt8 to char", 1.0}, doubles(), same_float_text, flt8_to_char,
                std_writer<double>());
  suite.compare({"flt8 to char, prices", kInformative}, prices(), same_float_text, flt8_to_char,
                std_writer<double>());
  suite.compare({"char to flt8, 17 digits", 1.3}, texts(doubles(), kScientific, 16), same,
                char_to_flt8, fast_float_reader(), std_reader<double>());
  suite.compare({"char to flt8, prices", 1.3}, texts(prices(), kFixed, 2), same, char_to_flt8,
                fast_float_reader(), std_reader<double>());
}

}  // namespace tvx::bench
