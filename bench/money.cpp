// Money: addition, and its text both ways.
#include "tvxcomn/money.h"

#include <functional>

#include "conversion.hpp"
#include "peers/exact.hpp"
#include "peers/peers.hpp"
#include "suite.hpp"

namespace tvx::bench {
namespace {

constexpr int32_t kDigits = 4;

// An amount in every form that a side takes.
struct Amount {
  comn_money money;
  int64_t plain;
  const peers::Exact* numeric;  // of pgtypes, where it is needed

  friend std::ostream& operator<<(std::ostream& out, const Amount& amount) {
    return out << amount.plain << " ten-thousandths";
  }
};

Amount amount_of(int64_t plain) {
  return {{static_cast<int32_t>(plain >> 32), static_cast<uint32_t>(plain)}, plain, nullptr};
}

int64_t plain_of(const comn_money& money) {
  return static_cast<int64_t>(static_cast<uint64_t>(money.high) << 32 | money.low);
}

// Amounts of 1 to 16 digits, each length as likely as the other.
template <class Generator>
Amount random_amount(Generator& generator) {
  int64_t limit = 10;
  for (auto digits = generator() % 16; digits > 0; --digits) limit *= 10;
  return amount_of(std::uniform_int_distribution<int64_t>(-limit, limit)(generator));
}

std::vector<Amount> amounts() {
  return random_values([](auto& generator) { return random_amount(generator); });
}

Text printed(const Amount& amount) {
  Text text;
  text.length = peers::print_amount(amount.plain, text.bytes, Text::kCapacity);
  return text;
}

// ---- Addition ----------------------------------------------------------------------------------

struct Pair {
  Amount a;
  Amount b;

  friend std::ostream& operator<<(std::ostream& out, const Pair& pair) {
    return out << pair.a << ", " << pair.b;
  }
};

void compare_addition(Suite& suite) {
  const auto pairs = random_values([](auto& generator) {
    return Pair{random_amount(generator), random_amount(generator)};
  });
  const auto ours = [](const Pair& pair) {
    comn_money result;
    comn_mnyadd(&pair.a.money, &pair.b.money, &result);
    return result;
  };
  const auto plain = [](const Pair& pair) {
    int64_t result;
    peers::add_checked(&pair.a.plain, &pair.b.plain, &result);
    return result;
  };
  const auto same = [](const comn_money& a, int64_t b) { return plain_of(a) == b; };
  suite.compare({"mnyadd", 2.0}, pairs, same, ours, Peer{"64-bit add and check", plain});
}

// ---- Text --------------------------------------------------------------------------------------

void compare_writing(Suite& suite) {
  const peers::ExactPeer& pgtypes = peers::pgtypes();
  std::vector<Amount> values = amounts();
  for (Amount& value : values) {
    const Text text = printed(value);
    peers::Exact* const numeric = pgtypes.create();
    pgtypes.read(text.bytes, text.length, *numeric);
    value.numeric = numeric;
  }
  comn_datafmt out = format_of(TVX_TYPE_CHAR, Text::kCapacity);
  out.precision = kDigits;
  const auto ours = [in = format_of(TVX_TYPE_MONEY, 0), out,
                     conversion_context = context()](const Amount& amount) {
    Text text;
    comn_moneytochar(conversion_context, &in, &amount.money, &out, text.bytes, &text.length);
    return text;
  };
  const auto numeric_text = [write = pgtypes.write](const Amount& amount) {
    Text text;
    text.length = write(*amount.numeric, kDigits, text.bytes);
    return text;
  };
  suite.compare({"money to char", 0.5}, values, std::equal_to<>(), ours, Peer{"snprintf", printed},
                Peer{"pgtypes", numeric_text});
}

void compare_reading(Suite& suite) {
  const peers::ExactPeer& pgtypes = peers::pgtypes();
  const auto values =
      random_values([](auto& generator) { return printed(random_amount(generator)); });
  const auto ours = [in = format_of(TVX_TYPE_CHAR, 0), out = format_of(TVX_TYPE_MONEY, 0),
                     conversion_context = context()](const Text& text) mutable {
    comn_money money;
    int32_t length;
    in.maxlength = text.length;
    comn_chartomoney(conversion_context, &in, text.bytes, &out, &money, &length);
    return money;
  };
  const auto theirs = [read = pgtypes.read, number = pgtypes.create()](const Text& text) {
    read(text.bytes, text.length, *number);
    return number;
  };
  const auto same = [&](const comn_money& money, const peers::Exact* number) {
    Text text;
    text.length = pgtypes.write(*number, kDigits, text.bytes);
    return printed(amount_of(plain_of(money))) == text;
  };
  suite.compare({"char to money", 0.5}, values, same, ours, Peer{"pgtypes", theirs});
}

}  // namespace

void compare_money(Suite& suite) {
  compare_addition(suite);
  compare_writing(suite);
  compare_reading(suite);
}

}  // namespace tvx::bench
