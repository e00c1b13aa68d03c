// Exact numerics: the operations on records and the text of records, beside other libraries on the
// same numbers. A record is read, checked and stored by every call of ours; peers find their
// numbers ready.
#include <algorithm>
#include <functional>

#include "conversion.hpp"
#include "peers/exact.hpp"
#include "suite.hpp"
#include "tvxcomn/numeric.h"

namespace tvx::bench {
namespace {

using peers::Exact;
using peers::ExactPeer;
using peers::Scaling;
using ExactText = TextOf<peers::kExactCapacity>;

// ---- Records and text --------------------------------------------------------------------------

ExactText text_of(const comn_numeric& value) {
  static const comn_datafmt in = format_of(TVX_TYPE_NUM, 0);
  static const comn_datafmt out = format_of(TVX_TYPE_CHAR, ExactText::kCapacity - 1);
  ExactText text;
  if (comn_numtochar(context(), &in, &value, &out, text.bytes, &text.length) != CS_SUCCEED)
    std::abort();
  text.bytes[text.length] = '\0';
  return text;
}

comn_datafmt numeric_format(int32_t precision, int32_t scale) {
  comn_datafmt format = format_of(TVX_TYPE_NUM, 0);
  format.precision = precision;
  format.scale = scale;
  return format;
}

// The precision of a text that cannot be read is 0.
auto reader(const comn_datafmt& format) {
  return [in = format_of(TVX_TYPE_CHAR, 0), out = format,
          conversion_context = context()](const ExactText& text) mutable {
    comn_numeric value;
    int32_t length;
    in.maxlength = text.length;
    if (comn_chartonum(conversion_context, &in, text.bytes, &out, &value, &length) != CS_SUCCEED)
      value.precision = 0;
    return value;
  };
}

// ---- Values ------------------------------------------------------------------------------------

// A number of exactly `precision` digits, as likely below zero as above, in a record of that type.
template <class Generator>
ExactText random_text(Generator& generator, int32_t precision, int32_t scale) {
  std::string text = generator() % 2 == 0 ? "-" : "";
  if (precision == scale) text += "0.";
  for (int32_t left = precision; left > 0; --left) {
    text += static_cast<char>(left == precision ? '1' + generator() % 9 : '0' + generator() % 10);
    if (left == scale + 1 && scale > 0) text += '.';
  }
  ExactText result;
  result.length = static_cast<int32_t>(text.copy(result.bytes, text.size()));
  result.bytes[result.length] = '\0';
  return result;
}

struct Range {
  const char* name;
  int32_t least_precision;
  int32_t greatest_precision;
  std::optional<int32_t> scale;  // else from 0 up to the precision
};

constexpr Range kLong{"38 digits", 38, 38, 10};
constexpr Range kMixed{"1 to 77 digits", 1, 77, std::nullopt};

template <class Generator>
comn_numeric random_numeric(Generator& generator, const Range& range) {
  std::uniform_int_distribution<int32_t> precisions(range.least_precision,
                                                    range.greatest_precision);
  const int32_t precision = precisions(generator);
  std::uniform_int_distribution<int32_t> scales(0, precision);
  const int32_t scale = range.scale ? *range.scale : scales(generator);
  return reader(numeric_format(precision, scale))(random_text(generator, precision, scale));
}

struct Operands {
  size_t index;
  comn_numeric a;
  comn_numeric b;

  friend std::ostream& operator<<(std::ostream& out, const Operands& operands) {
    return out << text_of(operands.a) << ", " << text_of(operands.b);
  }
};

using Operation = int32_t(const comn_numeric* a, const comn_numeric* b, comn_numeric* result);

// Pairs that the operation takes.
std::vector<Operands> operands_of(Operation* operation, const Range& range) {
  size_t index = 0;
  return random_values([&](auto& generator) {
    Operands drawn{index++, {}, {}};
    comn_numeric result;
    do {
      drawn.a = random_numeric(generator, range);
      drawn.b = random_numeric(generator, range);
    } while (operation(&drawn.a, &drawn.b, &result) != CS_SUCCEED);
    return drawn;
  });
}

// ---- What a result's type means for peers ------------------------------------------------------

using ScalingRule = Scaling(const comn_numeric& a, const comn_numeric& b,
                            const comn_numeric& result);

Scaling of_sum(const comn_numeric& a, const comn_numeric& b, const comn_numeric& result) {
  const int32_t common = std::max(a.scale, b.scale);
  return {common - a.scale, common - b.scale, common - result.scale, result.scale, false};
}

Scaling of_product(const comn_numeric& a, const comn_numeric& b, const comn_numeric& result) {
  return {0, 0, a.scale + b.scale - result.scale, result.scale, false};
}

Scaling of_quotient(const comn_numeric& a, const comn_numeric& b, const comn_numeric& result) {
  constexpr int32_t kNarrowDigits = 77;
  const int32_t shift = result.scale - a.scale + b.scale;
  const int32_t longest = std::max(a.precision + shift, b.precision - shift);
  return {std::max(shift, 0), std::max(-shift, 0), 0, result.scale, longest > kNarrowDigits};
}

// ---- Peers -------------------------------------------------------------------------------------

// What a peer was handed is never destroyed: it lives as long as the program.
Exact* in_form_of(const ExactPeer& peer, const ExactText& text) {
  Exact* const number = peer.create();
  peer.read(text.bytes, text.length, *number);
  return number;
}

struct PeerOperands {
  const Exact* a;
  const Exact* b;
  Scaling scaling;
};

std::vector<PeerOperands> in_form_of(const ExactPeer& peer, const std::vector<Operands>& values,
                                     Operation* operation, ScalingRule* rule) {
  std::vector<PeerOperands> prepared;
  for (const Operands& value : values) {
    comn_numeric result;
    operation(&value.a, &value.b, &result);
    prepared.push_back({in_form_of(peer, text_of(value.a)), in_form_of(peer, text_of(value.b)),
                        rule(value.a, value.b, result)});
  }
  return prepared;
}

struct PeerResult {
  const ExactPeer* peer;
  const Exact* number;
};

bool same_number(const comn_numeric& ours, const PeerResult& theirs) {
  if (ours.precision == 0) return false;
  ExactText text;
  text.length = theirs.peer->write(*theirs.number, ours.scale, text.bytes);
  return text_of(ours) == text;
}

// ---- The comparisons ---------------------------------------------------------------------------

// `make` turns a peer into a side.
template <class Value, class Agree, class Ours, class Make>
void compare_with_all(Suite& suite, Title title, const std::vector<Value>& values, Agree agree,
                      Ours ours, Make make) {
  suite.compare(std::move(title), values, agree, ours, make(peers::gmp()),
                make(peers::boost_integer()), make(peers::dec_number()), make(peers::pgtypes()));
}

struct OperationRow {
  const char* name;
  Operation* ours;
  peers::Operation* ExactPeer::*theirs;
  ScalingRule* scaling;
};

constexpr OperationRow kOperations[] = {
    {"numadd", comn_numadd, &ExactPeer::add, of_sum},
    {"numsub", comn_numsub, &ExactPeer::subtract, of_sum},
    {"nummul", comn_nummul, &ExactPeer::multiply, of_product},
    {"numdivide", comn_numdivide, &ExactPeer::divide, of_quotient},
};

std::string titled(const std::string& name, const Range& range) {
  return name + ", " + range.name;
}

void compare_operation(Suite& suite, const OperationRow& row, const Range& range) {
  const auto values = operands_of(row.ours, range);
  const auto ours = [operation = row.ours](const Operands& operands) {
    comn_numeric result;
    operation(&operands.a, &operands.b, &result);
    return result;
  };
  const auto theirs = [&](const ExactPeer& peer) {
    return Peer{peer.name, [prepared = in_form_of(peer, values, row.ours, row.scaling),
                            operation = peer.*row.theirs, result = peer.create(),
                            owner = &peer](const Operands& operands) {
                  const PeerOperands& own = prepared[operands.index];
                  operation(*own.a, *own.b, own.scaling, *result);
                  return PeerResult{owner, result};
                }};
  };
  compare_with_all(suite, {titled(row.name, range), 1.0}, values, same_number, ours, theirs);
}

// The pairs are those of which there is a sum, so that both fit one scale.
void compare_comparison(Suite& suite, const Range& range) {
  const auto values = operands_of(comn_numadd, range);
  const auto ours = [](const Operands& operands) { return comn_numcmp(&operands.a, &operands.b); };
  const auto theirs = [&](const ExactPeer& peer) {
    return Peer{peer.name, [prepared = in_form_of(peer, values, comn_numadd, of_sum),
                            compare = peer.compare](const Operands& operands) {
                  const PeerOperands& own = prepared[operands.index];
                  return compare(*own.a, *own.b, own.scaling);
                }};
  };
  compare_with_all(suite, {titled("numcmp", range), 2.0}, values, std::equal_to<>(), ours, theirs);
}

void compare_reading(Suite& suite, const Range& range) {
  const auto values =
      random_values([&](auto& generator) { return text_of(random_numeric(generator, range)); });
  const auto ours = reader(range.scale ? numeric_format(range.greatest_precision, *range.scale)
                                       : numeric_format(CS_TAKE_FROM_SOURCE, CS_TAKE_FROM_SOURCE));
  const auto theirs = [](const ExactPeer& peer) {
    return Peer{peer.name, [owner = &peer, number = peer.create()](const ExactText& text) {
                  owner->read(text.bytes, text.length, *number);
                  return PeerResult{owner, number};
                }};
  };
  compare_with_all(suite, {titled("char to num", range), 0.5}, values, same_number, ours, theirs);
}

void compare_writing(Suite& suite, const Range& range) {
  size_t index = 0;
  const auto values = random_values([&](auto& generator) {
    return Operands{index++, random_numeric(generator, range), {}};
  });
  const auto ours = [in = format_of(TVX_TYPE_NUM, 0),
                     out = format_of(TVX_TYPE_CHAR, ExactText::kCapacity),
                     conversion_context = context()](const Operands& operands) {
    ExactText text;
    comn_numtochar(conversion_context, &in, &operands.a, &out, text.bytes, &text.length);
    return text;
  };
  const auto theirs = [&](const ExactPeer& peer) {
    std::vector<const Exact*> prepared;
    for (const Operands& value : values) prepared.push_back(in_form_of(peer, text_of(value.a)));
    return Peer{peer.name, [prepared, owner = &peer](const Operands& operands) {
                  ExactText text;
                  text.length =
                      owner->write(*prepared[operands.index], operands.a.scale, text.bytes);
                  return text;
                }};
  };
  compare_with_all(suite, {titled("num to char", range), 0.5}, values, std::equal_to<>(), ours,
                   theirs);
}

}  // namespace

void compare_exact_numerics(Suite& suite) {
  for (const Range& range : {kLong, kMixed}) {
    for (const OperationRow& row : kOperations) compare_operation(suite, row, range);
    compare_comparison(suite, range);
    compare_reading(suite, range);
    compare_writing(suite, range);
  }
}

}  // namespace tvx::bench
