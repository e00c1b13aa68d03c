// Broken usage stops the process: a null pointer, a datatype code outside a routine's family, a
// length or another argument outside its range.
#include <signal.h>

#include "support/conversion.hpp"

namespace tvx::test {
namespace {

using testing::KilledBySignal;

constexpr const char* kAssertion = "^\n\rassertion failed, file '[^']+' line [0-9]+\n\r$";
constexpr const char* kNullPointer = "^\nInvalid NULL pointer , file '[^']+' line [0-9]+\n$";

comn_context unset{};
comn_context* const context = shared_context();
const comn_datafmt i4 = format_of(8), negative = format_of(-1);
char out[300];
int32_t length;

comn_conversion* table_routine(int32_t source, int32_t destination) {
  return com_conv_func(context, source, destination);
}

TEST(UsageDeathTest, CodesAndLengthsOfConversions) {
  // clang-format off
  const struct {
    comn_conversion* routine; int32_t source, destination, source_length = 8, capacity = 8;
    std::string value = varchar_record("1");
  } rows[] = {
      {comn_i4toi1, 7, 6}, {comn_i4toi1, 8, 7}, {comn_i8toi1, 20, 6}, {comn_i8toflt8, 20, 10},
      {comn_i8toi4, 8, 8}, {comn_i8toi8, 30, 8}, {table_routine(31, 8), 7, 8},
      {table_routine(33, 30), 33, 31}, {comn_bittochar, 11, 18}, {comn_bittobin, 11, 0},
      {comn_bittovarchar, 11, 19}, {comn_bittovarbin, 11, 18}, {comn_chartoi4, 18, 8},
      {comn_chartoflt8, 0, 8}, {comn_varchartoi4, 0, 8}, {comn_i4tochar, 8, 18},
      {comn_i8tochar, 20, 0}, {comn_i4tovarchar, 8, 0}, {comn_flt4tovarchar, 10, 18},
      {table_routine(23, 8), 8, 8}, {table_routine(23, 8), 23, -1},
      {comn_chartoi4, 0, 8, 0}, {comn_chartoflt8, 0, 10, -1},
      {comn_varchartoi4, 18, 8, 8, 8, varchar_record("")},
      {comn_varchartoflt8, 18, 10, 8, 8, varchar_record(std::string(257, '1'))},
      {comn_bittochar, 11, 0, 8, -1}, {comn_bittobin, 11, 1, 8, -1}, {comn_i4tochar, 8, 0, 8, -1},
      {comn_flt8tochar, 10, 0, 8, -1}, {table_routine(23, 0), 23, 0, 8, -1},
  };
  // clang-format on
  for (const auto& row : rows) {
    const comn_datafmt from = format_of(row.source, row.source_length);
    const comn_datafmt to = format_of(row.destination, row.capacity);
    EXPECT_EXIT(row.routine(context, &from, row.value.data(), &to, out, &length),
                KilledBySignal(SIGABRT), kAssertion)
        << "row " << &row - rows;
  }
}

TEST(UsageDeathTest, NullPointersToConversions) {
  for (const auto& [source, destination] : {std::pair{11, 11}, {11, 0}, {0, 8}, {8, 0}, {23, 8}})
    for (int missing = 0; missing < 6; ++missing) {
      const comn_datafmt from = format_of(source, 8), to = format_of(destination, 8);
      EXPECT_EXIT(table_routine(source, destination)(
                      missing == 0 ? nullptr : context, missing == 1 ? nullptr : &from,
                      missing == 2 ? nullptr : "\1", missing == 3 ? nullptr : &to,
                      missing == 4 ? nullptr : out, missing == 5 ? nullptr : &length),
                  KilledBySignal(SIGABRT), kNullPointer)
          << source << " to " << destination << ", argument " << missing;
    }
}

TEST(UsageDeathTest, OtherArguments) {
  // clang-format off
  void (*const null_pointers[])() = {
      [] { comn_context_open(nullptr, 1, nullptr); }, [] { comn_context_close(nullptr); },
      [] { com_conv_init(nullptr); }, [] { com_conv_free(nullptr); },
      [] { com_conv_func(nullptr, 0, 6); }, [] { com_conv_default(nullptr, 0, 6); },
      [] { com_conv_install(nullptr, 0, 6, comn_i4toi4); },
      [] { com_null_init(nullptr); }, [] { com_null_free(nullptr); },
      [] { com_null_reinstall(nullptr, 8); }, [] { com_null_set(context, 8, nullptr, 1); },
      [] { com_null_get(context, nullptr, out, 4, &length); },
      [] { com_null_get(context, &i4, nullptr, 4, &length); },
  };
  void (*const assertions[])() = {
      [] { com_conv_install(context, -1, 6, comn_i4toi4); },
      [] { com_conv_install(&unset, 45, 6, comn_i4toi4); },
      [] { com_conv_default(context, 0, -1); }, [] { com_conv_default(&unset, 0, 6); },
      [] { com_conv_func(&unset, 0, 6); }, [] { com_null_reinstall(context, -1); },
      [] { com_null_get(context, &negative, out, 4, &length); },
      [] { com_null_get(context, &i4, out, -1, &length); },
      [] { com_null_get(&unset, &i4, out, 4, &length); },
      [] { com_null_set(context, -1, out, 1); }, [] { com_null_set(context, 45, out, -9); },
      [] { comb_get_Prec_To_Len(-1); }, [] { comb_get_Prec_To_Len(78); },
      [] { comb_get_Len_To_Prec(-1); }, [] { comb_get_Len_To_Prec(35); },
      [] { com_errset(0); }, [] { com_errset(4); }, [] { com_copstr(out, "", 0); },
      [] { com_copstr(out, "12345", 5); }, [] { com_catstr(out, "", -1); },
      [] { com_copstr(out, "123", 4); com_catstr(out, "45", 5); },
  };
  // clang-format on
  for (const auto& call : null_pointers)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), kNullPointer) << &call - null_pointers;
  for (const auto& call : assertions)
    EXPECT_EXIT(call(), KilledBySignal(SIGABRT), kAssertion) << &call - assertions;
}

}  // namespace
}  // namespace tvx::test
