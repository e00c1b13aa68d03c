// Raw copies: values of fixed size and binary data in all directions, and how it is told that one
// does not fit; locators.
#include <signal.h>

#include <cmath>
#include <map>
#include <tuple>
#include <vector>

#include "support/binary_values.hpp"

namespace tvx::test {
namespace {

using namespace std::string_literals;

constexpr int32_t kOk = CS_SUCCEED, kCut = CS_CONV_TRUNCATED, kOver = CS_CONV_OVERFLOW;
constexpr int32_t kShort = CS_CONV_UNDERFLOW, kDomain = CS_CONV_DOMAIN;
constexpr int32_t kBin = TVX_TYPE_BIN, kVarbin = TVX_TYPE_VARBIN;

// The date or time 1 and what follows; no two bytes behind it are the same.
std::string bytes_for(std::integral auto length) {
  std::string bytes("\1\0\0\0", 4);
  for (char byte = 5; std::cmp_less(bytes.size(), length); ++byte) bytes += byte;
  return bytes.substr(0, static_cast<size_t>(length));
}

// ---- Values of fixed size ----------------------------------------------------------------------

TEST(FixedSize, FromAndToBinary) {
  const std::map<int32_t, int32_t> sizes = {
      {6, 1},  {7, 2},  {8, 4},  {9, 4},  {10, 8}, {12, 8}, {13, 4}, {14, 8}, {15, 4}, {16, 35},
      {20, 8}, {27, 4}, {28, 4}, {30, 8}, {31, 2}, {32, 4}, {33, 8}, {35, 8}, {36, 8}, {17, 35}};
  for (const auto& [code, size] : sizes) {
    const comn_datafmt fixed = format_of(code, size);
    for (int32_t length = 1; length <= size + 3 && size != 35; ++length)
      for (const int32_t from : {1, 3, 5, kVarbin})
        EXPECT_EQ(convert_value(from, bytes_for(length), fixed),
                  copied(bytes_for(length), size, from == kVarbin ? kOver : kCut, kShort))
            << length << " bytes to " << code;
    if (com_conv_func(shared_context(), code, kBin) == nullptr) continue;
    const std::string value = bytes_for(size);
    EXPECT_EQ(convert(fixed, value, format_of(kVarbin, 0, 7)), recorded(kOk, value)) << code;
    for (int32_t capacity = 0; capacity <= size + 3; ++capacity)
      for (uint32_t flags = 0; flags < 8; ++flags)
        EXPECT_EQ(convert(fixed, value, format_of(5, capacity, flags)),
                  copied_to_bin(value, capacity, flags, kCut));
  }
}

template <comn_fixed_conversion* helper, int32_t size>
int32_t sized(comn_context* context, const comn_datafmt* from, const void* source,
              const comn_datafmt* to, void* destination, int32_t* length) {
  return helper(context, from, source, to, destination, length, size);
}

TEST(FixedSize, SizesGivenByTheCaller) {
  const std::string long_value = bytes_for(300);
  EXPECT_EQ(convert(sized<comn_fixedtovarbin, 300>, format_of(77), long_value, format_of(kVarbin)),
            recorded(kOk, long_value.substr(0, 256)));
  for (const int32_t room : {0, 299, 300, 302})
    EXPECT_EQ(
        convert(sized<comn_fixedtobin, 300>, format_of(77), long_value, format_of(5, room, 2)),
        copied_to_bin(long_value, room, 2, kCut));
  for (const int32_t length : {1, 5, 6}) {
    const std::string bytes = bytes_for(length), record = varchar_record(bytes);
    const comn_datafmt bin = format_of(kBin, length), varbin = format_of(kVarbin);
    EXPECT_EQ(convert(sized<comn_bintofixed, 5>, bin, bytes, format_of(77, 5)),
              copied(bytes, 5, kCut, kShort));
    EXPECT_EQ(convert(sized<comn_varbintofixed, 5>, varbin, record, format_of(77, 5)),
              copied(bytes, 5, kOver, kShort));
    EXPECT_EQ(convert(sized<comn_bintofixed, 0>, bin, bytes, format_of(77)),
              (Outcome{kCut, 0, ""}));
  }
}

TEST(FixedSize, DatesAndTimesFromBinAreInTheirRange) {
  for (const auto& [code, first, last] : {std::tuple{27, -693595, 2958463}, {28, 0, 25919999}})
    for (const int32_t value : {first - 1, first, last, last + 1})
      for (const size_t length : {3u, 4u, 5u}) {
        const std::string bytes = (bytes_of(value) + "+").substr(0, length);
        Outcome expected = copied(bytes, 4, kOver, kShort);
        EXPECT_EQ(convert_value(kVarbin, bytes, format_of(code)), expected) << value;
        if (length == 5) expected.code = kCut;
        const bool is_legal = value >= first && value <= last;
        if (!is_legal && length >= 4) expected = {kDomain, 0, bytes_of(value)};
        EXPECT_EQ(convert_value(kBin, bytes, format_of(code)), expected) << value;
        auto* const bare = code == 27 ? comnb_bintodatea : comnb_bintotimea;
        EXPECT_EQ(convert_bare(bare, {}, bytes, 4), expected) << value;
      }
}

TEST(FixedSize, BitAndNumeric) {
  for (const std::string& bytes : {"\0"s, "\0\1"s, "\x80"s, "\2\0"s}) {
    const Outcome expected = delivered(bytes[0] == 0 ? "\0"s : "\1", 1);
    for (const int32_t from : {kBin, kVarbin})
      EXPECT_EQ(convert_value(from, bytes, format_of(11)), expected);
    EXPECT_EQ(convert_bare(comnb_bintobit, {}, bytes, 1), expected);
  }
  const auto numeric = [](int32_t precision, int32_t scale) {
    comn_datafmt format = format_of(TVX_TYPE_NUM);
    format.precision = precision;
    format.scale = scale;
    return format;
  };
  for (const int32_t length : {1, 32, 33, 34, 40})
    for (const int32_t from : {kBin, kVarbin}) {
      Outcome expected = copied(bytes_for(length), 33, from == kBin ? kCut : kOver, kShort);
      expected = {expected.code, 35, "\1M" + expected.bytes};
      EXPECT_EQ(convert_value(from, bytes_for(length), numeric(1, 77)), expected) << length;
      const Outcome bad{CS_CONV_BADPREC, kNoLength, untouched(35)};
      for (const int32_t precision : {0, 78, CS_TAKE_FROM_SOURCE})
        EXPECT_EQ(convert_value(from, bytes_for(length), numeric(precision, 0)), bad);
      EXPECT_EQ(convert_value(from, "a", numeric(1, 78)).code, CS_CONV_BADSCALE);
    }
  char source[40]{}, field[33];
  const comnb_context context{};
  for (const auto& [length, room, code, reported] :
       {std::tuple{40, 35, kCut, 33}, {33, 35, kOk, 33}, {3, 8, kShort, 8}, {9, 8, kCut, 8}}) {
    const comnb_value from{length, 0, 0, 0, 0, nullptr, source};
    comnb_value to{0, 0, room, 77, 0, nullptr, field}, bad{0, 0, room, 78, 0, nullptr, field};
    EXPECT_EQ(code, comnb_bintonum(&context, &from, &to));
    EXPECT_EQ(reported, to.length);
    EXPECT_EQ(CS_CONV_BADPREC, comnb_bintonum(&context, &from, &bad));
  }
}

// ---- Copies ------------------------------------------------------------------------------------

TEST(BinaryCopy, EveryPair) {
  for (const int32_t length : {1, 2, 7, 255, 256, 257, 300}) {
    const std::string bytes = bytes_for(length);
    for (const int32_t from : {1, 3, 5, kVarbin}) {
      if (from == kVarbin && length > 256) continue;
      for (const int32_t capacity : {0, 1, length - 1, length, length + 1, length + 3})
        for (uint32_t flags = 0; flags < 8; ++flags)
          EXPECT_EQ(convert_value(from, bytes, format_of(3, capacity, flags)),
                    copied_to_bin(bytes, capacity, flags, from == kVarbin ? kOver : kCut));
      if (from == kVarbin)  // whole, with what is behind the data
        EXPECT_EQ(convert(format_of(kVarbin), varchar_record(bytes, '+'), format_of(kVarbin)),
                  (Outcome{kOk, 258, varchar_record(bytes, '+')}));
      else
        EXPECT_EQ(convert_value(from, bytes, format_of(kVarbin, 0, 7)),
                  recorded(length > 256 ? kCut : kOk, bytes.substr(0, 256)));
    }
  }
}

TEST(BinaryCopy, Bare) {
  for (auto* const routine : {comnb_bintodate, comnb_bintobigdatetime, comnb_bintobigtime})
    for (const int32_t length : {1, 8, 9})
      EXPECT_EQ(convert_bare(routine, {}, bytes_for(length), 8),
                copied(bytes_for(length), 8, kCut, kShort));
  for (const std::string& bytes : {""s, "ab"s, "abcdefgh"s})
    for (int32_t room = 0; room <= size_of(bytes) + 3; ++room)
      for (uint32_t flags = 0; flags < 16; ++flags) {
        const auto to = static_cast<size_t>(room);
        const Outcome plain = copied(bytes, room, kCut, kOk);
        EXPECT_EQ(convert_bare(comnb_anytovar, bare_context(flags), bytes, to), plain);
        Outcome filled = plain.code == kOk ? complete(plain, 0, room, flags & 6) : plain;
        if (plain.code == kOk && (flags & 14) == 12)
          filled = delivered(std::string(to - bytes.size(), ' ') + bytes, room);
        EXPECT_EQ(convert_bare(comnb_anytofixed, bare_context(flags), bytes, to), filled)
            << bytes << " in " << room << ", " << flags;
      }
}

TEST(BinaryCopy, BareFloatsAreFinite) {
  const auto code_of = [](std::string bytes, char token, int32_t room, uint32_t flags = 0) {
    std::string copy(8, '\0');
    const comnb_context context = bare_context(flags);
    const comnb_value from{size_of(bytes), 0, 0, 0, 0, nullptr, bytes.data()};
    comnb_value to{0, static_cast<uint8_t>(token), room, 0, 0, nullptr, copy.data()};
    return comnb_anytofixed(&context, &from, &to);
  };
  for (const float value : {1.0f, INFINITY, -INFINITY, NAN}) {
    const int32_t expected = std::isfinite(value) ? kOk : kDomain;
    EXPECT_EQ(expected, code_of(bytes_of(value), ';', 4));
    EXPECT_EQ(expected, code_of(bytes_of(value), ';', 8, CS_FORMAT_ZEROFILL));
    EXPECT_EQ(expected, code_of(bytes_of(double{value}), '>', 8));
    EXPECT_EQ(kCut, code_of(bytes_of(double{value}), '>', 7));
    EXPECT_EQ(kOk, code_of(bytes_of(value), '>', 8)) << "half of it is not looked at";
    EXPECT_EQ(kOk, code_of(bytes_of(value), '8', 4));
  }
}

// ---- Locators ----------------------------------------------------------------------------------

// A locator of a chain of chunks, which it frees when it is reset.
comn_locator chain_of(const std::vector<std::string>& chunks) {
  comn_locator locator{};
  locator.marker = COMN_LOCATOR_VALID;
  comn_locator_chunk** link = &locator.chunks;
  for (const std::string& chunk : chunks) {
    *link = static_cast<comn_locator_chunk*>(comn_malloc(sizeof(comn_locator_chunk)));
    **link = {nullptr, chunk.data(), size_of(chunk)};
    link = &(*link)->next;
  }
  return locator;
}

int32_t fill(comn_locator& locator, const std::string& text, int32_t code, int32_t& length,
             uint32_t flags = 0) {
  const comn_datafmt from = format_of(0, size_of(text)), to = format_of(code, 48, flags);
  comn_conversion* const routine = com_conv_func(shared_context(), 0, code);
  return routine(shared_context(), &from, text.data(), &to, &locator, &length);
}

Outcome read_locator(const comn_locator& locator, int32_t code, const comn_datafmt& to) {
  const comn_datafmt from = format_of(code, 48);
  comn_conversion* const routine = com_conv_func(shared_context(), code, to.datatype);
  return observe("", static_cast<size_t>(to.maxlength), [&](void*, void* out, int32_t* length) {
    return routine(shared_context(), &from, &locator, &to, out, length);
  });
}

void discard(comn_locator& locator) {
  int32_t length;
  fill(locator, "00", 37, length);
  comn_free(locator.data);
}

TEST(Locator, DataFromTextAndBack) {
  const long before = live_blocks();
  int32_t length = kNoLength;
  for (const int32_t code : {37, 38, 39}) {
    comn_locator locator = chain_of({"a", "b"}), copy = chain_of({"c"});
    fail_each_allocation([&](long n) {
      comn_locator victim = chain_of({});
      const FailingHeap heap(n);
      const int32_t result = fill(victim, "01", code, length);
      comn_free(victim.data);
      return result;
    });
    EXPECT_EQ(kOk, fill(locator, " 0xABC ", code, length));
    EXPECT_TRUE(length == 2 && locator.length == 2 && locator.datatype == code);
    EXPECT_EQ(nullptr, locator.chunks);
    for (uint32_t flags = 0; flags < 8; ++flags) {
      const comn_datafmt to = format_of(0, 6, flags);
      EXPECT_EQ(read_locator(locator, code, to), convert_value(kBin, "\x0A\xBC", to));
    }
    const comn_datafmt as = format_of(code, 48);
    EXPECT_EQ(kOk, comn_locatortolocator(shared_context(), &as, &locator, &as, &copy, &length));
    EXPECT_EQ(read_locator(copy, code, format_of(0, 3)), (Outcome{kCut, 2, "0a\xA5"}));
    const std::pair<std::string, int32_t> emptied[] = {
        {"0g", CS_CONV_SYNTAX}, {std::string(131'071, '1'), kOver}, {"0x", kOk}};
    for (const auto& [text, result] : emptied) {
      EXPECT_EQ(kOk, fill(locator, std::string(131'070, '1'), code, length));
      EXPECT_EQ(65'535, locator.length);
      EXPECT_EQ(result, fill(locator, text, code, length));
      EXPECT_EQ(read_locator(locator, code, format_of(0, 3)), delivered("", 3));
    }
    // Blanks around the digits give no bytes; a fill goes up to half the text, and not too far.
    for (uint32_t flags = 0; flags < 8; ++flags) {
      const bool fills = (flags & CS_FORMAT_ZEROFILL) != 0;
      const std::string data = fills ? "0102000000" : "0102";
      EXPECT_EQ(kOk, fill(locator, " 0x0102  ", code, length, flags));
      EXPECT_EQ(size_of(data), 2 * length);
      EXPECT_EQ(read_locator(locator, code, format_of(0, 19)), delivered(data, 19)) << flags;
      EXPECT_EQ(fills ? CS_CONV_OVERFLOW : kOk,
                fill(locator, std::string(131'070, '1') + "   ", code, length, flags));
      EXPECT_EQ(fills ? 0 : 65'535, locator.length) << flags;
    }
    comn_free(locator.data);
    comn_free(copy.data);
    locator.marker = 779;
    EXPECT_EQ(CS_FAIL, fill(locator, "01", code, length));
    EXPECT_EQ(CS_FAIL, read_locator(locator, code, format_of(0, 3)).code);
  }
  EXPECT_EQ(before, live_blocks());
}

// Chunks give what one value of all of them gives, and none of them a zero byte.
TEST(Locator, Chunks) {
  for (const auto& [code, to] : {std::pair{37, 4}, {38, 5}}) {
    for (const std::vector<std::string>& chunks :
         {std::vector{"it's"s}, {"a", "", "b'", "cde"}, {"ab", ""}}) {
      comn_locator locator = chain_of(chunks);
      std::string whole;
      for (const std::string& chunk : chunks) whole += chunk;
      for (int32_t capacity = 0; capacity <= 10; ++capacity)
        for (uint32_t flags = 0; flags < 40; flags += flags == 7 ? 25 : 1)
          EXPECT_EQ(read_locator(locator, code, format_of(to, capacity, flags)),
                    convert_value(to - 4, whole, format_of(to, capacity, flags)))
              << whole << " in " << capacity << ", " << flags;
      discard(locator);
    }
    EXPECT_EQ(read_locator(chain_of({}), code, format_of(to, 2, 7)), (Outcome{kOk, 0, "\0\xA5"s}));
    EXPECT_EQ(read_locator(chain_of({}), code, format_of(to, 0)), delivered("", 0));
  }
  // A zero byte ends the last chunk only.
  const std::vector chunks = {"a\0'"s, "b\0'"s};
  comn_locator locator = chain_of(chunks);
  EXPECT_EQ(read_locator(locator, 37, format_of(4, 9, 33)), delivered("a\0''b\0\0"s, 9));
  discard(locator);
}

// ---- Broken usage ------------------------------------------------------------------------------

TEST(BinaryDeathTest, CodesAndLengths) {
  static comn_context* const context = shared_context();
  static const std::string full = varchar_record(std::string(256, '1'));
  const std::string none = varchar_record(""), over = varchar_record(std::string(257, '1'));
  static char out[300];
  static int32_t length;
  const auto dies = [](auto call) { EXPECT_EXIT(call(), testing::KilledBySignal(SIGABRT), ""); };
  // clang-format off
  const struct { int32_t from, to, length, capacity; std::string value = full; } rows[] = {
      {1, 0, 0, 8}, {1, 8, -1, 8}, {1, 0, 8, -1}, {0, 1, 0, 8}, {0, 0, 0, 8}, {0, 0, 8, -1},
      {0, 18, 0, 0}, {0, 37, 0, 48}, {0, 37, 8, -1}, {19, 0, 0, 8, none}, {19, 8, 0, 0, over},
      {19, 19, 0, 0, over}, {18, 0, 0, 8, none}, {18, 19, 0, 8, over}, {18, 19, 0, -1},
      {8, 1, 0, -1}, {1, 16, 0, 0}, {37, 0, -1, 8}, {37, 4, -1, 8}, {38, 5, -1, 8},
      {37, 37, -1, 48}, {37, 37, 48, -1},
  };
  // clang-format on
  for (const auto& row : rows)
    dies([&] {
      const comn_datafmt from = format_of(row.from, row.length);
      const comn_datafmt to = format_of(row.to, row.capacity);
      com_conv_func(context, row.from, row.to)(context, &from, row.value.data(), &to, out, &length);
    });
  static const comn_datafmt i4 = format_of(8), bin = format_of(1, 8);
  static const comn_datafmt text = format_of(37, 48), image = format_of(38, 48);
  dies([] { comn_bintobin(context, &i4, out, &bin, out, &length); });
  dies([] { comn_fixedtobin(context, &i4, out, &bin, out, &length, 0); });
  dies([] { comn_bintofixed(context, &bin, out, &i4, out, &length, -1); });
  dies([] { comn_varbintofixed(context, &bin, full.data(), &i4, out, &length, 4); });
  dies([] { comn_locatortolocator(context, &text, out, &image, out, &length); });
  static const comnb_context bare{};
  static comnb_value from{0, 0, 8, 0, 0, nullptr, out}, to{0, 0, 8, 0, 0, out, out};
  dies([] { comnb_chartochar(&bare, &from, &to); });
  dies([] { comnb_bintobit(&bare, &from, &to); });
}

}  // namespace
}  // namespace tvx::test
