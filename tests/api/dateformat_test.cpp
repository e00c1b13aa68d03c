// Dates and times converted to text in both layers, the older entry points, the settings of a
// locale without a locale, and the current time. The forms themselves are tested with the
// formatter.
#include "tvxcomn/dateformat.h"

#include <csignal>
#include <ctime>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

const char* const kGerman[] = {"Jänner", "Feb", "März", "Apr", "Mai", "Jun",
                               "Jul",    "Aug", "Sep",  "Okt", "Nov", "Dez"};

// 2003-01-02 14:05:09.023
constexpr comn_datetime kDatetime{37'621, (14 * 3600 + 5 * 60 + 9) * 300 + 7};
constexpr uint64_t kBigtime = (14 * 3600 + 5 * 60 + 9) * 1'000'000ull + 23'000;
constexpr uint64_t kBigdatetime = (731'216ull + 366) * 86'400'000'000 + kBigtime;

const struct Source {
  int32_t code;
  std::string name, value, text;
} kSources[] = {{12, "date", bytes_of(kDatetime), "Jan  2 2003  2:05PM"},
                {13, "date4", bytes_of(comn_datetime4{37'621, 14 * 60 + 5}), "Jan  2 2003  2:05PM"},
                {27, "datea", bytes_of(kDatetime.days), "Jan  2 2003"},
                {28, "timea", bytes_of(kDatetime.ticks), " 2:05PM"},
                {35, "bigdatetime", bytes_of(kBigdatetime), "Jan  2 2003  2:05PM"},
                {36, "bigtime", bytes_of(kBigtime), " 2:05PM"}};

TEST(DateFormat, ToCharUnderEveryFlagAndCapacity) {
  for (const Source& source : kSources)
    for (uint32_t flags = 0; flags < 8; ++flags) {
      const auto length = static_cast<int32_t>(source.text.size());
      for (int32_t room = 0; room <= length + 3; ++room) {
        Outcome outcome = complete(delivered(source.text, room), length, room, flags);
        if (3 * room < length) outcome.code = CS_CONV_TRUNCATED;
        for (const int32_t code : {0, 2, 4})
          EXPECT_EQ(convert(format_of(source.code), source.value, format_of(code, room, flags)),
                    outcome)
              << source.name << ", room " << room << ", flags " << flags;
      }
    }
}

TEST(DateFormat, ToVarchar) {
  for (const Source& source : kSources)
    for (const uint32_t flags : {0u, 7u}) {
      const std::string record = varchar_record(source.text, kUntouched);
      EXPECT_EQ(convert(format_of(source.code), source.value, format_of(18, 0, flags)),
                (Outcome{CS_SUCCEED, 258, record}))
          << source.name;
    }
}

Outcome bare(const std::string& routine, const std::string& value, size_t room, int32_t code,
             const char* const* months, uint32_t flags = 0) {
  comnb_context context = bare_context(flags);
  context.date_format = code;
  context.months = months;
  return convert_bare(exported<comnb_conversion>("comnb_" + routine), context, value, room);
}

TEST(DateFormat, BareToChar) {
  for (const Source& source : kSources) {
    const bool is_big = source.code >= 35;
    const bool has_name = source.code != 28 && source.code != 36;
    const std::string routine = (source.code == 35 ? "bigdatetime" : source.name) + "tochar";
    std::string text = source.text;
    EXPECT_EQ(bare(routine, source.value, 40, 24, kGerman),
              (Outcome{CS_CONV_BADSTYLE, 0, untouched(40)}));
    EXPECT_EQ(
        bare(routine, source.value, 40, 0, nullptr),
        is_big && has_name ? (Outcome{CS_CONV_SYNTAX, 0, untouched(40)}) : delivered(text, 40))
        << routine;
    if (has_name) text.replace(0, 3, "Jänner");
    const auto length = static_cast<int32_t>(text.size());
    for (uint32_t flags = 0; flags < 8; ++flags)
      for (int32_t room = 0; room <= length + 3; ++room) {
        const Outcome field = delivered(text, room);
        const Outcome cut{CS_CONV_TRUNCATED, room, field.bytes};
        EXPECT_EQ(bare(routine, source.value, static_cast<size_t>(room), 0, kGerman, flags),
                  room < length ? cut : complete(field, length, room, flags))
            << routine << ", room " << room << ", flags " << flags;
      }
  }
  EXPECT_EQ(bare("bigtimetochar", bytes_of(kBigtime), 5, 1, nullptr), delivered({"\0", 1}, 5));
  EXPECT_EQ(bare("bigtimetochar", bytes_of(kBigtime), 0, 1, nullptr),
            (Outcome{CS_CONV_TRUNCATED, 0, ""}));
  EXPECT_EQ(
      bare("datetochar", bytes_of(kDatetime), 12, 101, nullptr, COMNB_RIGHTALIGN | COMNB_BLANKFILL),
      (Outcome{CS_SUCCEED, 12, "  01/02/2003"}));
}

TEST(DateFormat, BareToVarchar) {
  const auto to_varchar = [](size_t room, int32_t code, const char* const* months) {
    return bare("bigdatetimetovarchar", bytes_of(kBigdatetime), room, code, months, 7);
  };
  EXPECT_EQ(to_varchar(20, 112, nullptr), delivered("20030102", 20));
  EXPECT_EQ(to_varchar(8, 112, nullptr), delivered("20030102", 8));
  EXPECT_EQ(to_varchar(7, 112, nullptr), (Outcome{CS_CONV_TRUNCATED, 7, "2003010"}));
  EXPECT_EQ(to_varchar(5, 119, nullptr), (Outcome{CS_CONV_BADSTYLE, 0, untouched(5)}));
  EXPECT_EQ(to_varchar(5, 106, nullptr), (Outcome{CS_CONV_SYNTAX, 0, untouched(5)}));
  EXPECT_EQ(to_varchar(20, 106, kGerman), delivered("02 Jänner 2003", 20));
}

TEST(DateFormat, NegativeBareRoomIsNone) {
  comnb_context context = bare_context(COMNB_TERMINATE);
  context.months = kGerman;
  uint64_t value = kBigtime;
  for (auto* const routine : {comnb_bigtimetochar, comnb_timeatochar, comnb_bigdatetimetovarchar}) {
    char out = kUntouched;
    comnb_value from{}, to{};
    from.data = &value;
    to.data = &out;
    to.length = to.maxlength = -5;
    EXPECT_EQ(CS_CONV_TRUNCATED, routine(&context, &from, &to));
    EXPECT_EQ(0, to.length);
    EXPECT_EQ(kUntouched, out);
  }
}

// ---- Older entry points ----

TEST(DateFormat, OlderEntryPoints) {
  const auto extended = [](int32_t room, int32_t length, int32_t code, const char* const* months) {
    return observe(bytes_of(kDatetime), static_cast<size_t>(room),
                   [=](void* bytes, void* out, int32_t*) {
                     const auto* const value = static_cast<const comn_datetime*>(bytes);
                     char* const text = static_cast<char*>(out);
                     return code == 9 ? com_date2char(value, length, text, room, months)
                                      : com_date2char_ex(value, length, text, room, code, months);
                   });
  };
  const auto written = [](int32_t code, const std::string& bytes) {
    return Outcome{code, kNoLength, bytes};
  };
  for (int32_t room = 0; room < 30; ++room) {
    std::string text = "Jan  2 2003  2:05:09:023PM";
    text.resize(static_cast<size_t>(room), ' ');
    EXPECT_EQ(extended(room, 8, 9, nullptr), written(room >= 26 ? 26 : -1, text));
  }
  EXPECT_EQ(extended(17, 8, 106, kGerman), written(15, "02 Jänner 2003  "));
  EXPECT_EQ(extended(8, 8, 112, nullptr), written(8, "20030102"));
  EXPECT_EQ(extended(8, 8, 24, nullptr), written(-1, untouched(8)));
  EXPECT_EQ(extended(8, 0, 112, nullptr), written(0, untouched(8)));
  EXPECT_EQ(com_date2char(nullptr, 8, nullptr, 0, nullptr), 0);

  char out[8];
  const comn_datetime4 small{37'621, 845};
  EXPECT_EXIT(com_date2char(&kDatetime, -1, out, 8, nullptr), testing::KilledBySignal(SIGABRT),
              "assertion failed");
  EXPECT_EQ(com_cvtdatetochar(&kDatetime, out, 8, 8, nullptr), 8);
  EXPECT_EQ(std::string(out, 8), "14:05:09");
  EXPECT_EQ(com_cvtdate4tochar(&small, out, 8, 8, nullptr), 8);
  EXPECT_EQ(std::string(out, 8), "14:05:00");
}

// ---- Settings and time ----

TEST(DateFormat, SettingsWithoutALocale) {
  const comn_datafmt format{};
  comn_context* const context = shared_context();
  for (comn_context* const given : {context, static_cast<comn_context*>(nullptr)}) {
    const int32_t code = given != nullptr ? 0 : 1;
    EXPECT_EQ(comn_dtloc_format(given, nullptr), 1);
    EXPECT_EQ(comn_dtloc_is12hour(given, nullptr), 1);
    EXPECT_EQ(comn_dtloc_format_fmt(given, nullptr), code);
    EXPECT_EQ(comn_intl_get_dtfmt(given, nullptr), code);
    EXPECT_EQ(comn_get_datetochar_fmt(given, &format), code);
    EXPECT_EQ(comn_get_datetochar_fmt(given, nullptr), code);
  }
}

TEST(DateFormat, CurrentTime) {
  for (const int32_t twelve_hour : {0, 1, 2}) {
    const int32_t size = twelve_hour == 1 ? 21 : 18;
    GuardedText text("", size);
    int32_t length = 0, now[8];
    const std::time_t before = std::time(nullptr);
    ASSERT_EQ(comn_time(6, twelve_hour, text.begin(), size, &length, now), CS_SUCCEED);
    std::tm parts{};
    parts.tm_year = now[0] - 1900, parts.tm_mon = now[1], parts.tm_mday = now[2];
    parts.tm_hour = now[5], parts.tm_min = now[6], parts.tm_sec = now[7];
    parts.tm_isdst = std::localtime(&before)->tm_isdst;
    const std::time_t told = std::mktime(&parts);
    EXPECT_TRUE(told >= before && told <= std::time(nullptr)) << told;
    EXPECT_EQ(parts.tm_yday + 1, now[3]);
    EXPECT_EQ(parts.tm_wday, now[4]);
    char expected[32];
    const char* const form = twelve_hour != 1 ? "%d/%y/%m %H:%M:%S" : "%d/%y/%m %I:%M:%S %p";
    std::strftime(expected, sizeof expected, form, &parts);
    if (twelve_hour == 1 && now[5] == 0) std::memcpy(expected + 9, "00", 2);
    EXPECT_EQ(text.string(), expected);
    EXPECT_EQ(length, size);
    length = now[0] = -1;
    EXPECT_EQ(comn_time(6, twelve_hour, text.begin(), size - 1, &length, now), CS_FAIL);
    EXPECT_EQ(length, size);
    EXPECT_EQ(now[0], -1);
  }
  EXPECT_EQ(comn_time(1, 0, nullptr, 0, nullptr, nullptr), CS_SUCCEED);
}

TEST(DateFormatDeathTest, Misuse) {
  comn_context* const context = shared_context();
  const comn_datafmt big = format_of(35), date4 = format_of(13), time = format_of(28);
  const comn_datafmt text = format_of(0, 40), negative = format_of(0, -1), record = format_of(18);
  char out[300];
  int32_t length;
  EXPECT_DEATH(comn_datetochar(context, &date4, out, &text, out, &length), "assertion");
  EXPECT_DEATH(comn_timeatochar(context, &big, out, &text, out, &length), "assertion");
  EXPECT_DEATH(comn_date4tochar(context, &date4, out, &record, out, &length), "assertion");
  EXPECT_DEATH(comn_timeatovarchar(context, &time, out, &text, out, &length), "assertion");
  EXPECT_DEATH(comn_datetochar(context, &big, out, &negative, out, &length), "assertion");
  EXPECT_DEATH(comn_datetochar(context, &big, nullptr, &text, out, &length), "NULL");
  EXPECT_DEATH(com__datetochar(nullptr, out, 40, 0, kGerman), "NULL");
  EXPECT_DEATH(com__bigtimetochar(&kBigtime, nullptr, 40, 0, kGerman), "NULL");
  EXPECT_DEATH(comn_time(1, 0, out, 40, nullptr, nullptr), "NULL");
}

}  // namespace
}  // namespace tvx::test
