/* Built outside the tree against an installed copy, as C99: converts a value, and checks at compile
 * time that the interface is laid out as callers know it. */
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "tvxcomn/tvxcomn.h"

#define JOIN_(a, b) a##b
#define JOIN(a, b) JOIN_(a, b)
#define CHECK(condition) typedef char JOIN(check_, __LINE__)[(condition) ? 1 : -1]
#define SIZE(type, bytes) CHECK(sizeof(type) == (bytes))
#define AT(type, field, offset) CHECK(offsetof(type, field) == (offset))

SIZE(comn_datafmt, 304);
AT(comn_datafmt, leading_word, 256);
AT(comn_datafmt, datatype, 260);
AT(comn_datafmt, format, 264);
AT(comn_datafmt, maxlength, 268);
AT(comn_datafmt, scale, 272);
AT(comn_datafmt, precision, 276);
AT(comn_datafmt, words, 280);
AT(comn_datafmt, locale, 296);

SIZE(comnb_value, 32);
AT(comnb_value, length, 0);
AT(comnb_value, token, 4);
AT(comnb_value, maxlength, 8);
AT(comnb_value, precision, 12);
AT(comnb_value, scale, 13);
AT(comnb_value, charset, 16);
AT(comnb_value, data, 24);

SIZE(comnb_context, 32);
AT(comnb_context, flags, 0);
AT(comnb_context, date_format, 4);
AT(comnb_context, numeric_flags, 8);
AT(comnb_context, attributes, 16);
AT(comnb_context, months, 24);

SIZE(comn_money, 8);
AT(comn_money, low, 4);
SIZE(comn_numeric, 35);
AT(comn_numeric, scale, 1);
AT(comn_numeric, sign, 2);
AT(comn_numeric, magnitude, 3);
SIZE(comn_datetime, 8);
AT(comn_datetime, ticks, 4);
SIZE(comn_datetime4, 4);
AT(comn_datetime4, minutes, 2);
SIZE(comn_varchar, 258);
AT(comn_varchar, data, 2);
SIZE(comn_varbin, 258);

SIZE(comn_dateparts, 48);
AT(comn_dateparts, weekday, 16);
AT(comn_dateparts, millisecond, 32);
AT(comn_dateparts, fraction_units, 44);
SIZE(comn_locator, 48);
AT(comn_locator, datatype, 4);
AT(comn_locator, length, 8);
AT(comn_locator, data, 16);
AT(comn_locator, chunks, 24);
SIZE(comn_locator_chunk, 24);
AT(comn_locator_chunk, text, 8);
AT(comn_locator_chunk, length, 16);
SIZE(com_appglobal, 48);
AT(com_appglobal, references, 16);
AT(com_appglobal, value, 24);
AT(com_appglobal, mutex, 32);
AT(com_appglobal, files, 40);

SIZE(com_charattr, 80);
AT(com_charattr, class_, 2);
AT(com_charattr, id, 3);
AT(com_charattr, name_length, 4);
AT(com_charattr, name, 6);
AT(com_charattr, format, 36);
AT(com_charattr, lengths, 48);
AT(com_charattr, to_ascii, 56);
AT(com_charattr, attributes, 64);
AT(com_charattr, soundex, 72);

SIZE(intl_reader, 2240);
SIZE(intl_datetime_record, 604);
AT(intl_datetime_record, short_months, 252);
AT(intl_datetime_record, days, 372);
AT(intl_datetime_record, first_day, 592);
AT(intl_datetime_record, date_order, 596);
AT(intl_datetime_record, twelve_hour, 600);

/* One function of each family of signatures. */
static int32_t (*const conversion)(comn_context*, const comn_datafmt*, const void*,
                                   const comn_datafmt*, void*, int32_t*) = comn_i4tochar;
static int32_t (*const bare)(const comnb_context*, const comnb_value*,
                             comnb_value*) = comnb_i4tochar;
static int32_t (*const parser)(const char*, int32_t, int32_t*,
                               const com_charattr*) = com__chtoi4_mb;
static comn_conversion* (*const lookup)(comn_context*, int32_t, int32_t) = com_conv_func;
static int32_t (*const null_get)(comn_context*, const comn_datafmt*, void*, int32_t,
                                 int32_t*) = com_null_get;
static int32_t (*const classify)(const com_charattr*, const char*) = comn_isalpha;
static int32_t (*const field)(char*, int32_t, int32_t, int32_t) = com__cpint;
static int32_t (*const trace)(int32_t, const char*, int32_t) = com_errtrace;
static void* (*const allocate)(size_t) = comn_malloc;
static char* (*const next_value)(intl_reader*, int32_t*) = intl_nextvalue;
static int32_t (*const size_of)(int32_t, int32_t) = comn_typelen;
static int32_t (*const fixed)(comn_context*, const comn_datafmt*, const void*, const comn_datafmt*,
                              void*, int32_t*, int32_t) = comn_bintofixed;
static int32_t (*const legacy)(const void*, int32_t, void*, int32_t) = com_chartoi4;
static int32_t (*const read_date)(const char*, int32_t, int32_t, int32_t, const char* const*,
                                  const char* const*, const com_charattr*, comn_datetime*,
                                  int32_t*) = com__datefromchar_mb;
static int32_t (*const write_date)(const comn_datetime*, char*, int32_t, int32_t,
                                   const char* const*) = com__datetochar;
static int32_t (*const count_units)(int32_t, const uint64_t*, const uint64_t*,
                                    int64_t*) = com__bigdatediff;
static int32_t (*const list_operation)(lm_list*, int32_t, void*, int32_t, void*,
                                       void**) = lm_list_op;
static int32_t (*const start)(comn_thread**, uint32_t (*)(void*), void*,
                              uint32_t) = comn_create_thread_ex;

int main(void) {
  comn_context* context;
  comn_datafmt from, to;
  int32_t value = 42, length = 0;
  char text[16];

  memset(&from, 0, sizeof from);
  memset(&to, 0, sizeof to);
  from.datatype = TVX_TYPE_I4;
  to.datatype = TVX_TYPE_CHAR;
  to.maxlength = sizeof text;
  if (comn_context_open(NULL, COMN_CONTEXT_NO_LOCALISATION, &context) != CS_SUCCEED) return 1;
  if (conversion(context, &from, &value, &to, text, &length) != CS_SUCCEED) return 2;
  printf("%.*s\n", (int)length, text);
  comn_context_close(context);
  return length == 2 && memcmp(text, "42", 2) == 0 && bare && parser && lookup && null_get &&
                 classify && field && trace && allocate && next_value && size_of && fixed &&
                 legacy && read_date && write_date && count_units && list_operation && start
             ? 0
             : 3;
}
