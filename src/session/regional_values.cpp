#include "session/regional_values.h"

#include "toolkit/text.h"

namespace korvel::session {

void TakeRegional(const toolkit::Regional& values, SessionRecord& session) {
  session.gSepDecimal = values.decimalSeparator;
  session.gSepMilhar = values.thousandsSeparator;
  session.gAgrupamento = toolkit::CutTo(values.grouping, 1);
  session.gFormatoData = values.shortDate;
  session.gSepData = values.dateSeparator;
  session.gSepHora = values.timeSeparator;
}

}  // namespace korvel::session
