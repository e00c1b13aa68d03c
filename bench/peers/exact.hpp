// Exact decimal arithmetic by other libraries. Every peer works on numbers of its own form, which
// are made before anything is timed.
#pragma once

#include <cstdint>

#include "tvxcomn/datatypes.h"

namespace tvx::bench::peers {

// A number in the form of one peer. Those that know whole numbers only leave out the point.
struct Exact;

// The scale of a result, and the powers of ten that lead to it where numbers are whole: the
// operands are multiplied by the first two, the result is divided by the third, towards zero.
struct Scaling {
  int32_t left;
  int32_t right;
  int32_t dropped;
  int32_t scale;
  bool wide;  // an operand so multiplied has more than 256 bits
};

using Operation = void(const Exact& a, const Exact& b, const Scaling& scaling, Exact& result);

struct ExactPeer {
  const char* name;
  Exact* (*create)();  // zero; never destroyed
  Operation* add;
  Operation* subtract;
  Operation* multiply;
  Operation* divide;
  int32_t (*compare)(const Exact& a, const Exact& b, const Scaling& scaling);  // -1, 0, 1
  // A text of at most 80 bytes: "-", digits with a point among them, and a zero byte behind them.
  void (*read)(const char* text, int32_t length, Exact& number);
  // Such a text without the zero byte. Returns its length.
  int32_t (*write)(const Exact& number, int32_t scale, char* out);
};

inline constexpr int32_t kExactCapacity = 88;  // bytes for every text

TVXCOMN_API const ExactPeer& gmp();            // mpz
TVXCOMN_API const ExactPeer& boost_integer();  // cpp_int of 256 bits, of 512 where that is too few
TVXCOMN_API const ExactPeer& dec_number();     // decNumber of 160 digits
TVXCOMN_API const ExactPeer& pgtypes();        // PGTYPESnumeric, which rounds: see there

}  // namespace tvx::bench::peers
