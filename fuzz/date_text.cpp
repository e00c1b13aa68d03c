// Texts of dates and times under any date format code and order, and the dates written in any form.
#include "target.hpp"

namespace {

using namespace tvx::fuzz;

void read_by_parsers(Input input) {
  const int32_t code = input.choose(256) - 16;
  const int32_t order = 1 + input.choose(6);
  const char* const* const months = com_intl_months(nullptr, nullptr);
  const char* const* const short_months = com_intl_shortmonths(nullptr, nullptr);
  const Block text(input.rest(), input.rest().size());
  const auto length = static_cast<int32_t>(text.view().size());
  comn_datetime moment;
  int32_t days;
  int32_t ticks;
  int32_t lost;
  if (com__datefromchar_mb(text.data(), length, code, order, months, short_months, nullptr, &moment,
                           &lost) == COM_DATE_DONE) {
    comn_dateparts parts;
    com_datecrack(&moment, &parts);
    expect(parts.month >= 0 && parts.month <= 11 && parts.day >= 1 && parts.day <= 31);
    for (int32_t form = -1; form < 150; ++form) {
      const Block out(35);
      const int32_t written = com__datetochar(&moment, out.data(), 35, form, short_months);
      expect(written >= COM_FORMAT_REFUSED && written <= 35);
    }
  }
  static_cast<void>(com__timefromchar_mb(text.data(), length, code, order, months, short_months,
                                         nullptr, &moment));
  static_cast<void>(com__dateafromchar_mb(text.data(), length, code, order, months, short_months,
                                          nullptr, &days));
  static_cast<void>(com__timeafromchar_mb(text.data(), length, code, order, months, short_months,
                                          nullptr, &ticks, &lost));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const Input input(data, size);
  read_by_parsers(input);
  if (input.rest().empty()) return 0;
  for (const int32_t datatype : {TVX_TYPE_DATETIME, TVX_TYPE_DATE4, TVX_TYPE_DATEA, TVX_TYPE_TIMEA,
                                 TVX_TYPE_BIGDATETIME, TVX_TYPE_BIGTIME}) {
    const Result read = from_text(input.rest(), format_of(datatype));
    if (read.code == CS_SUCCEED) expect(to_text(datatype, read.value).code == CS_SUCCEED);
  }
  expect_round_trip(input.rest(), format_of(TVX_TYPE_DATEA));
  return 0;
}
