// The legacy interface: what each kind of destination holds at every length, agreement with the
// data-format layer where that gives the rule, and the results that are the legacy layer's own.
#include <signal.h>

#include <cmath>
#include <map>
#include <vector>

#include "support/conversion.hpp"
#include "support/multibyte_record.hpp"
#include "tvxcomn/legacy.h"

namespace tvx::test {
namespace {

using std::string;

// Calls a routine on guarded values; `more` are the further arguments of its family.
template <class Routine, class... More>
Outcome legacy(Routine* routine, std::string_view source, size_t room, int32_t destination_length,
               More... more) {
  return observe(source, room, [&](void* from, void* to, int32_t*) {
    return routine(from, static_cast<int32_t>(source.size()), to, destination_length, more...);
  });
}

template <class... More>
Outcome legacy(const string& name, std::string_view source, size_t room, int32_t length,
               More... more) {
  auto* routine = exported<int32_t(const void*, int32_t, void*, int32_t, More...)>(name);
  if (routine == nullptr) {
    ADD_FAILURE() << name << " is not exported";
    return {};
  }
  return legacy(routine, source, room, length, more...);
}

// ---- Kinds of text destination -----------------------------------------------------------------

enum class Overflow { star, cut, cut_even };

// What a kind makes of a value, told once more.
Outcome expected(const string& kind, const string& value, int32_t length, Overflow overflow,
                 size_t room) {
  const bool terminated = kind == "string" || kind == "ntbstring";
  const bool unbounded = length < (terminated ? 1 : 0);
  const size_t capacity =
      unbounded ? value.size() : static_cast<size_t>(length) - (terminated ? 1 : 0);
  Outcome outcome{static_cast<int32_t>(value.size()), kNoLength, value};
  if (value.size() > capacity) {
    outcome.code = -1;
    outcome.bytes =
        overflow == Overflow::star ? string(capacity > 0 ? 1 : 0, '*') : value.substr(0, capacity);
    if (overflow == Overflow::cut_even) outcome.bytes.resize(capacity / 2 * 2);
  }
  if (kind == "varychar") {
    outcome.bytes = bytes_of(static_cast<uint16_t>(outcome.bytes.size())) + outcome.bytes;
  } else if (!unbounded && kind != "ntbstring") {
    outcome.bytes.resize(capacity, ' ');
  }
  if (terminated) outcome.bytes += '\0';
  outcome.bytes.resize(room, kUntouched);
  return outcome;
}

template <class... More>
void check_kinds(const string& source_name, std::string_view source, const string& value,
                 Overflow overflow, More... more) {
  const auto most = static_cast<int32_t>(value.size()) + 3;
  const size_t room = value.size() + 6;
  for (const string kind : {"char", "string", "ntbstring", "varychar"})
    for (int32_t length = -1; length <= most; ++length) {
      SCOPED_TRACE("com_" + source_name + "to" + kind + ", length " + std::to_string(length));
      EXPECT_EQ(expected(kind, value, length, overflow, room),
                legacy("com_" + source_name + "to" + kind, source, room, length, more...));
    }
}

TEST(LegacyTest, EveryKindOfTextAtEveryLength) {
  check_kinds("i1", bytes_of(uint8_t{200}), "200", Overflow::star);
  check_kinds("i2", bytes_of(int16_t{-32768}), "-32768", Overflow::star);
  check_kinds("i4", bytes_of(int32_t{42}), "42", Overflow::star);
  for (const auto& [value, with_point, without] :
       {std::tuple{0.5, ".5", ".5"},
        {-0.5, "-0.5", "-0.5"},
        {-0.0, "-0.0", "-0"},
        {2.0, "2.0", "2"},
        {1e300, "1.0000000000000001e+300", "1.0000000000000001e+300"},
        {0.0, "0.0", "0"}}) {
    check_kinds("flt8", bytes_of(value), with_point, Overflow::star, int32_t{0});
    check_kinds("flt8", bytes_of(value), without, Overflow::star, int32_t{1});
  }
  check_kinds("flt4", bytes_of(2.5F), "2.5", Overflow::star, int32_t{0});
  check_kinds("money", bytes_of(comn_money{0, 12'345'650}), "1234.57", Overflow::star);
  check_kinds("mny4", bytes_of(int32_t{-5'000}), "-0.50", Overflow::star);
  check_kinds("char", "it is", "it is", Overflow::cut);
  check_kinds("varychar", varchar_record("a record"), "a record", Overflow::cut);
  check_kinds("bin", "\x01\xAB\xff", "01abff", Overflow::cut_even);
  const string number = [] {
    comn_numeric record{};
    const comn_datafmt from = format_of(0, 6), to = [] {
      comn_datafmt format = format_of(16);
      format.precision = 9, format.scale = 2;
      return format;
    }();
    int32_t length = 0;
    EXPECT_EQ(CS_SUCCEED, comn_chartonum(shared_context(), &from, "-12.34", &to, &record, &length));
    return bytes_of(record);
  }();
  check_kinds("num", number, "-12.34", Overflow::cut);
  const char* const* no_names = nullptr;
  const char* const names[12] = {"Janvier"};
  const string moment = bytes_of(comn_datetime{37'621, 50'709 * 300});
  check_kinds("date", moment, "Jan  2 2003  2:05PM", Overflow::cut, int32_t{0}, no_names);
  check_kinds("date", moment, "Janvier 02, 03", Overflow::cut, int32_t{7}, &names[0]);
  check_kinds("date4", bytes_of(comn_datetime4{0, 61}), "1900/01/01", Overflow::cut, int32_t{111},
              no_names);
}

TEST(LegacyTest, OddTexts) {
  EXPECT_EQ((Outcome{4, kNoLength, string("abcd\0", 5) + untouched(5)}),
            legacy(com_chartontbstring, "abcd  ", 10, 10));
  EXPECT_EQ((Outcome{0, kNoLength, string("\0", 1) + untouched(1)}),
            legacy(com_chartontbstring, "  ", 2, 2));
  EXPECT_EQ((Outcome{-1, kNoLength, string("    \0", 5)}),
            legacy(com_datetostring, bytes_of(comn_datetime{}), 5, 5, 24, nullptr));
  char field[] = "ab c   ";
  com__padntbstring(field, 7);
  EXPECT_STREQ("ab c", field);
  com__padntbstring(field, 0);
  EXPECT_STREQ("", field);
  char area[] = "0123456789";
  com_bmove(area, area + 2, 5);
  EXPECT_STREQ("0101234789", area);
  com__bzero(area + 1, 8);
  EXPECT_EQ(string("0\0\0\0\0\0\0\0\0009", 10), string(area, 10));
}

// ---- Numbers -----------------------------------------------------------------------------------

const std::vector<std::pair<string, int32_t>> kScalars = {
    {"i1", 6}, {"i2", 7}, {"i4", 8}, {"flt4", 9}, {"flt8", 10}};

TEST(LegacyTest, NarrowingAgreesWithTheDataFormatLayer) {
  const double doubles[] = {
      0,     -0.9,   1.9,          255,          255.9,         256,    -1,     32767.5,
      32768, -32769, 2147483647.9, 2147483648.0, -2147483649.0, 3.5e38, -1e300, HUGE_VAL};
  for (const auto& [from, source] : kScalars)
    for (const auto& [to, destination] : kScalars)
      for (const double value : doubles) {
        const string bytes =
            source == 6   ? bytes_of(static_cast<uint8_t>(std::clamp(value, 0., 255.)))
            : source == 7 ? bytes_of(static_cast<int16_t>(std::clamp(value, -32768., 32767.)))
            : source == 8
                ? bytes_of(static_cast<int32_t>(std::clamp(value, -2147483648., 2147483647.)))
            : source == 9 ? bytes_of(static_cast<float>(std::clamp(value, -3e38, 3e38)))
                          : bytes_of(value);
        Outcome wanted = convert(format_of(source), bytes, format_of(destination));
        const bool below = from == "i4" && to == "i2" && value < 0;
        if (wanted.code == CS_SUCCEED)
          wanted.code = wanted.length;
        else
          wanted = {below ? -2 : -1, kNoLength, untouched(wanted.bytes.size())};
        wanted.length = kNoLength;
        EXPECT_EQ(wanted, legacy("com_" + from + "to" + to, bytes, wanted.bytes.size(), 0))
            << from << " to " << to << " of " << value;
      }
}

int32_t legacy_code(const Outcome& converted) {
  static const std::map<int32_t, int32_t> codes = {{CS_CONV_OVERFLOW, -1}, {CS_CONV_UNDERFLOW, -2},
                                                   {CS_CONV_BADPREC, -7},  {CS_CONV_BADSCALE, -8},
                                                   {CS_CONV_SYNTAX, -3},   {CS_CONV_DOMAIN, -6}};
  if (converted.code == CS_SUCCEED) return converted.length;
  const auto found = codes.find(converted.code);
  return found == codes.end() ? converted.code : found->second;
}

TEST(LegacyTest, TextsAgreeWithTheDataFormatLayer) {
  const char* const texts[] = {"42",
                               " -7 ",
                               "+1",
                               "300",
                               "99999",
                               "3000000000",
                               "x",
                               "1 2",
                               "  ",
                               "1.5",
                               "1e400",
                               "-1e400",
                               "1e-400",
                               "3.5e38",
                               "inf",
                               "$1,234.56",
                               "922337203685477.5808",
                               "0x10",
                               "-"};
  std::vector<std::pair<string, int32_t>> types = kScalars;
  types.insert(types.end(), {{"money", 14}, {"mny4", 15}});
  for (const auto& [to, code] : types)
    for (const char* text : texts) {
      Outcome wanted =
          convert(format_of(0, static_cast<int32_t>(strlen(text))), text, format_of(code));
      wanted.code = legacy_code(wanted);
      wanted.length = kNoLength;
      // A float that is none is not stored; an integer or an amount that is none leaves its bytes.
      const bool keeps = wanted.code == -3 && to != "i1" && to != "i2" && to != "i4";
      if (keeps) wanted.bytes = untouched(wanted.bytes.size());
      const size_t size = wanted.bytes.size();
      EXPECT_EQ(wanted, legacy("com_charto" + to, text, size, 0)) << to << " of " << text;
      EXPECT_EQ(wanted, legacy("com_varycharto" + to, varchar_record(text), size, 0)) << to << text;
      if (code < 9) {
        const com_charattr* built_in = nullptr;
        EXPECT_EQ(wanted, legacy("com_mb_charto" + to, text, size, 0, built_in)) << to << text;
      }
    }
}

TEST(LegacyTest, FloatsOfAttributeRecords) {
  // clang-format off
  const struct { const char* text; int32_t code; double value = 0; } rows[] = {
      {"1.5", 8, 1.5}, {" \t-2e+3\t ", 8, -2000}, {".5", 8, .5}, {"5.", 8, 5},
      {"1e400", -1, 1.7976931348623157e308}, {"-1e400", -1, -1.7976931348623157e308},
      {"1e-400", -2, 0}, {"", 0}, {" ", -3}, {"inf", -3}, {"nan", -3}, {"0x10", -3}, {"1e", -3},
      {"1e+", -3}, {"e5", -3}, {"1.2.3", -3}, {"1e2e3", -3}, {"1 2", -3}, {"--1", -3}, {"1-", -3},
      {"1e5.", -3}, {"+", -3}, {"1\n", 8, 1}, {"1\t\xff\t", 8, 1}, {"1\n2", -3}};
  // clang-format on
  const MultibyteRecord wide;
  for (const auto& row : rows) {
    const string text = row.text;
    const bool stores = row.code == 8 || row.code == -1 || row.code == -2;
    const Outcome wanted{row.code, kNoLength, stores ? bytes_of(row.value) : untouched(8)};
    EXPECT_EQ(wanted, legacy(com_mb_chartoflt8, text, 8, 8, nullptr)) << text;
    EXPECT_EQ(wanted, legacy(com_mb_varychartoflt8, varchar_record(text), 8, 8, nullptr)) << text;
    EXPECT_EQ(wanted,
              legacy(com_mb_chartoflt8, MultibyteRecord::full_width(text), 8, 8, wide.get()))
        << text;
  }
  const string longest = string(2000, ' ') + "25" + string(700, ' ');
  EXPECT_EQ((Outcome{4, kNoLength, bytes_of(25.F)}), legacy(com_chartoflt4, longest, 4, 4));
  const string wide_number = MultibyteRecord::full_width("25." + string(300, '0'));
  fail_each_allocation([&](long n) {
    const FailingHeap failing(n);
    double out;
    const int32_t size = static_cast<int32_t>(wide_number.size());
    const int32_t result = com_mb_chartoflt8(wide_number.data(), size, &out, 8, wide.get());
    return result == -1 ? CS_MEM_ERROR : result;
  });
}

TEST(LegacyTest, Bits) {
  for (const auto& [text, code, bit] : {std::tuple{"0010", 1, 1},
                                        {"000  ", 1, 0},
                                        {"1x", -3, 0},
                                        {" 1", -3, 0},
                                        {"1 1", -3, 0},
                                        {"  ", 1, 0},
                                        {"+1", -3, 0}}) {
    const Outcome wanted{code, kNoLength,
                         code == 1 ? string(1, static_cast<char>(bit)) : untouched(1)};
    EXPECT_EQ(wanted, legacy(com_chartobit, text, 1, 1)) << text;
    EXPECT_EQ(wanted, legacy(com_varychartobit, varchar_record(text), 1, 1)) << text;
  }
}

// ---- Exact numerics ----------------------------------------------------------------------------

TEST(LegacyTest, NumericsAgreeWithTheDataFormatLayer) {
  const string half = bytes_of(2.5), i4 = bytes_of(int32_t{-300}), i2 = bytes_of(int16_t{-3});
  // clang-format off
  const struct { string name; int32_t code; string source; } sources[] = {
      {"i4", 8, i4}, {"i2", 7, i2}, {"i1", 6, "\xFE"}, {"bit", 11, "\1"}, {"bit", 11, "\2"},
      {"flt8", 10, half}, {"flt4", 9, bytes_of(-1.5F)}, {"mny4", 15, i4}, {"money", 14, half},
      {"bin", 1, "abc"}, {"bin", 1, string(40, '\1')}, {"char", 0, "-7.25"}, {"char", 0, "junk"},
      {"char", 0, "99999999999"}, {"num", 16, string("\5\2\1", 3) + string(31, '\0') + "\x7F"},
      {"num", 16, string(35, '\xFF')}};
  // clang-format on
  const char* const fixed[] = {"bit", "i1", "i2", "i4", "flt4", "flt8", "money", "mny4"};
  const int32_t codes[] = {11, 6, 7, 8, 9, 10, 14, 15};
  for (const auto& row : sources)
    for (const auto& [precision, scale] : {std::pair{9, 2}, {3, 0}, {0, 0}, {9, 78}}) {
      comn_datafmt to = format_of(16);
      to.precision = precision, to.scale = scale;
      const auto size = static_cast<int32_t>(row.source.size());
      const Outcome wanted = convert(format_of(row.code, size), row.source, to);
      const Outcome got = legacy("com_" + row.name + "tonum", row.source, 35, 35, precision, scale);
      EXPECT_EQ((Outcome{legacy_code(wanted), kNoLength, wanted.bytes}), got) << row.name;
      if (row.code < 2) {
        const string record = varchar_record(row.source);
        const string name = row.code == 0 ? "com_varychartonum" : "com_varybintonum";
        Outcome of_record = got;
        if (got.code == CS_CONV_TRUNCATED) of_record.code = row.code == 0 ? got.code : -1;
        EXPECT_EQ(of_record, legacy(name, record, 35, 35, precision, scale)) << name;
      }
      for (size_t i = 0; wanted.code == CS_SUCCEED && i < std::size(codes); ++i) {
        Outcome back = convert(format_of(16), got.bytes, format_of(codes[i]));
        back = {legacy_code(back), kNoLength, back.bytes};
        EXPECT_EQ(back, legacy(string("com_numto") + fixed[i], got.bytes, back.bytes.size(), 0));
      }
    }
  const MultibyteRecord wide;
  comn_numeric record{};
  const string text = MultibyteRecord::full_width("12.5");
  EXPECT_LT(0, com_mb_chartonum(text.data(), static_cast<int32_t>(text.size()), &record, 35, 5, 1,
                                wide.get()));
  EXPECT_EQ(125, record.magnitude[2]) << "three bytes of magnitude behind the sign";
  const string number = bytes_of(record);
  EXPECT_EQ((Outcome{35, kNoLength, number + untouched(1)}),
            legacy(com_numtobinary, number, 36, 36));
  EXPECT_EQ((Outcome{CS_CONV_TRUNCATED, kNoLength, number.substr(0, 9)}),
            legacy(com_numtobinary, number, 9, 9));
  EXPECT_EQ((Outcome{-1, kNoLength, string("\x09\0", 2) + number.substr(0, 9)}),
            legacy(com_numtovarybin, number, 11, 9));
  EXPECT_EQ(-1, legacy(com_varybintonum, varchar_record(string(34, '\1')), 35, 35, 77, 0).code);
  EXPECT_EQ((Outcome{35, kNoLength, string("\x23\0", 2) + number}),
            legacy(com_numtovarybin, number, 37, 35));
}

// ---- Bytes, null values and usage --------------------------------------------------------------

TEST(LegacyTest, Bytes) {
  const string four = "\1\2\3\4";
  EXPECT_EQ((Outcome{3, kNoLength, "\1\2\3" + untouched(1)}), legacy(com_bintoi4, "\1\2\3", 4, 4));
  EXPECT_EQ((Outcome{-1, kNoLength, four}), legacy(com_bintoi4, four + "\5", 4, 4));
  EXPECT_EQ((Outcome{2, kNoLength, "\1\2"}), legacy(com_varybintoi2, varchar_record("\1\2"), 2, 2));
  EXPECT_EQ((Outcome{0, kNoLength, untouched(8)}),
            legacy(com_varybintomoney, varchar_record(""), 8, 8));
  EXPECT_EQ((Outcome{4, kNoLength, four + string(2, '\0')}), legacy(com_anytobinary, four, 6, 6));
  EXPECT_EQ((Outcome{-1, kNoLength, "\1\2"}), legacy(com_anytobinary, four, 2, 2));
  EXPECT_EQ((Outcome{4, kNoLength, string("\4\0", 2) + four}),
            legacy(com_anytovarybin, four, 6, 4));
  EXPECT_EQ((Outcome{2, kNoLength, "\x0A\xBC" + untouched(1)}),
            legacy(com_chartobinary, "0xaBc", 3, 3));
  EXPECT_EQ((Outcome{-1, kNoLength, "\x0A"}), legacy(com_chartobinary, "abc", 1, 1));
  EXPECT_EQ(-3, legacy(com_varychartobinary, varchar_record("a b"), 3, 3).code);
  const char* const sizes[] = {"i1",    "i2",   "i4",    "flt4",    "mny4",
                               "date4", "flt8", "money", "datetime"};
  const size_t expected_sizes[] = {1, 2, 4, 4, 4, 4, 8, 8, 8};
  for (size_t i = 0; i < std::size(sizes); ++i) {
    const string bytes = string("abcdefghij").substr(0, expected_sizes[i] + 1);
    const Outcome cut{-1, kNoLength, bytes.substr(0, expected_sizes[i])};
    EXPECT_EQ(cut, legacy(string("com_binto") + sizes[i], bytes, expected_sizes[i], 99))
        << sizes[i];
    EXPECT_EQ(cut, legacy(string("com_varybinto") + sizes[i], varchar_record(bytes),
                          expected_sizes[i], 99));
  }
}

TEST(LegacyTest, Dates) {
  const char* const* none = nullptr;
  const com_charattr* built_in = nullptr;
  const MultibyteRecord wide;
  for (const auto& [text, code, days, ticks] :
       {std::tuple{"Jan 2 2003 10:30PM", 8, 37'621, 24'300'000},
        {"01/02/2003", 8, 37'621, 0},
        {"02/30/2003", -1, 0, 0},
        {"someday", -3, 0, 0}}) {
    const Outcome wanted{
        code, kNoLength,
        code == 8 ? bytes_of(comn_datetime{days, static_cast<uint32_t>(ticks)}) : untouched(8)};
    EXPECT_EQ(wanted, legacy(com_chartodatetime, text, 8, 8, 0, none, none)) << text;
    EXPECT_EQ(wanted, legacy(com_varychartodatetime, varchar_record(text), 8, 8, 0, none, none))
        << text;
    EXPECT_EQ(wanted, legacy(com_mb_chartodatetime, MultibyteRecord::full_width(text), 8, 8, 0,
                             none, none, wide.get()))
        << text;
    EXPECT_EQ(wanted, legacy(com_mb_varychartodatetime, varchar_record(text), 8, 8, 0, none, none,
                             built_in))
        << text;
  }
  const Outcome minute{4, kNoLength, bytes_of(comn_datetime4{37'621, 630})};
  EXPECT_EQ(minute, legacy(com_chartodate4, "2003/01/02 10:29:31", 4, 4, 0, none, none));
  EXPECT_EQ(minute,
            legacy(com_varychartodate4, varchar_record("02/01/2003 10:30"), 4, 4, 103, none, none));
  EXPECT_EQ(-1, legacy(com_chartodate4, "1/1/1899", 4, 4, 0, none, none).code);
}

TEST(LegacyTest, NullValues) {
  const auto set = [](com_null_setter* setter, const char* value, int32_t size, size_t room,
                      int32_t length) {
    return observe("", room,
                   [&](void*, void* to, int32_t*) { return setter(to, length, value, size); });
  };
  const auto outcome = [](int32_t code, const string& bytes) {
    return Outcome{code, kNoLength, bytes};
  };
  const string zeros(8, '\0');
  EXPECT_EQ(outcome(3, "n/a  "), set(com_setcharnull, "n/a", 3, 5, 5));
  EXPECT_EQ(outcome(-5, "n/"), set(com_setcharnull, "n/a", 3, 2, 2));
  EXPECT_EQ(outcome(0, "     "), set(com_setcharnull, nullptr, 3, 5, 5));
  EXPECT_EQ(outcome(3, string("n/a \0", 5)), set(com_setstringnull, "n/a", 3, 5, 5));
  EXPECT_EQ(outcome(-5, string("n/\0", 3)), set(com_setstringnull, "n/a", 3, 3, 3));
  EXPECT_EQ(outcome(3, string("n/a\0", 4) + untouched(1)),
            set(com_setntbstringnull, "n/a", 3, 5, 5));
  EXPECT_EQ(outcome(0, string(1, '\0') + untouched(1)),
            set(com_setntbstringnull, nullptr, 0, 2, 2));
  EXPECT_EQ(outcome(1, string("\1\0x", 3)), set(com_setvarycharnull, "x", 1, 3, 1));
  EXPECT_EQ(outcome(0, string(2, '\0') + untouched(1)), set(com_setvarybinnull, nullptr, 0, 3, 1));
  EXPECT_EQ(outcome(2, string("ab\0", 3)), set(com_setbinarynull, "ab", 2, 3, 3));
  for (const auto& [setter, size] : {std::pair{&com_setmoneynull, 8},
                                     {&com_setdatetimenull, 8},
                                     {&com_setmny4null, 4},
                                     {&com_setflt4null, 4},
                                     {&com_setdatetime4null, 4}}) {
    const auto room = static_cast<size_t>(size);
    EXPECT_EQ(outcome(size, zeros.substr(0, room)), set(setter, nullptr, 0, room, size));
    EXPECT_EQ(outcome(size, string("abcdefgh").substr(0, room)),
              set(setter, "abcdefgh", size, room, 0));
    EXPECT_EQ(outcome(-5, string("abcdefghi").substr(0, room)),
              set(setter, "abcdefghi", 9, room, size));
    EXPECT_EQ(outcome(size, "ab" + zeros.substr(0, room - 2)), set(setter, "ab", 2, room, size));
    EXPECT_EQ(0, setter(nullptr, 8, "abcdefgh", 8));
  }
  char record[35];
  EXPECT_EQ(-7, com_setnumnull(record, 35, nullptr, 0, 0, 0));
  EXPECT_EQ(-7, com_setnumnull(record, 35, nullptr, 0, 78, 0));
  EXPECT_EQ(-8, com_setnumnull(record, 35, nullptr, 0, 9, 78));
  EXPECT_EQ(35, com_setnumnull(record, 35, nullptr, 0, 9, 2));
  EXPECT_EQ(string("\x09\x02", 2) + string(33, '\0'), string(record, 35));
  const string five = string("\1\0\0\5", 4) + string(31, '\0');
  EXPECT_LT(0, com_setnumnull(record, 35, five.data(), 35, 3, 1));
  EXPECT_EQ(string("\3\1\0\0\x32", 5), string(record, 5)) << "5 became 5.0";
}

TEST(LegacyTest, NothingToConvert) {
  char out[300] = "kept";
  for (const char* name : {"com_i4toi2", "com_chartochar", "com_numtochar", "com_bintoi4",
                           "com_chartobit", "com_anytobinary", "com_i4tochar", "com_chartomoney"}) {
    auto* routine = exported<com_conversion>(name);
    ASSERT_NE(nullptr, routine) << name;
    EXPECT_EQ(0, routine(nullptr, 4, out, 4)) << name;
    EXPECT_EQ(0, routine("1234", 0, out, 4)) << name;
    EXPECT_EQ(0, routine("1234", 4, nullptr, 4)) << name;
    EXPECT_EXIT(routine("1234", -1, out, 4), testing::KilledBySignal(SIGABRT), "assertion failed");
  }
  EXPECT_STREQ("kept", out);
}

TEST(LegacyTest, MoneyArithmeticIsThatOfTheCurrentInterface) {
  const comn_money a{0, 25'000}, b{0, 20'000}, zero{};
  const int32_t a4 = 25'000, b4 = -20'000, zero4 = 0;
  comn_money result{};
  int32_t result4 = 0;
  const auto is = [&](int64_t count) { return (int64_t{result.high} << 32 | result.low) == count; };
  EXPECT_TRUE(com_mnyadd(&a, &b, &result) == 1 && is(45'000));
  EXPECT_TRUE(com_mnysub(&a, &b, &result) == 1 && is(5'000));
  EXPECT_TRUE(com_mnymul(&a, &b, &result) == 1 && is(50'000));
  EXPECT_TRUE(com_mnydivide(&a, &b, &result) == 1 && is(12'500));
  EXPECT_EQ(CS_CONV_DIVZERO, com_mnydivide(&a, &zero, &result));
  EXPECT_TRUE(com_mnyminus(&a, &result) == 1 && is(-25'000));
  EXPECT_TRUE(com_mnycopy(&a, &result) == 1 && is(25'000));
  EXPECT_TRUE(com_mnyinc(&result) == 1 && is(25'001));
  EXPECT_TRUE(com_mnydec(&result) == 1 && is(25'000));
  EXPECT_TRUE(com_mnyscale(&result, 2, 7) == 1 && is(50'007));
  EXPECT_TRUE(com_mny4add(&a4, &b4, &result4) == 1 && result4 == 5'000);
  EXPECT_TRUE(com_mny4sub(&a4, &b4, &result4) == 1 && result4 == 45'000);
  EXPECT_TRUE(com_mny4mul(&a4, &b4, &result4) == 1 && result4 == -50'000);
  EXPECT_TRUE(com_mny4divide(&a4, &b4, &result4) == 1 && result4 == -12'500);
  EXPECT_EQ(CS_CONV_DIVZERO, com_mny4divide(&a4, &zero4, &result4));
  EXPECT_TRUE(com_mny4minus(&a4, &result4) == 1 && result4 == -25'000);
}

}  // namespace
}  // namespace tvx::test
