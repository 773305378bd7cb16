#include "automation/sending_history.h"

#include <fmt/format.h>

#include "data/editable_recordset.h"
#include "session/connections.h"
#include "toolkit/dates.h"

namespace korvel::automation {

bool RegistaEnvio(const session::Context& context, std::string_view DataInicial, std::string_view DataFinal,
                  std::string_view Ficheiro, std::string_view Observa, bool ok) {
  session::ConnectionPtr company;
  if (!session::AbreConnectionLOCAL_bln(context, company)) return false;
  const data::DateTime now = context.clock.Now();
  auto row = data::EditableRecordset::AddNew(*company, "HistoricoEnvio");
  row.Set("DataEnvio", toolkit::Data_Actual_PData_str("", "", "", now));
  row.Set("HoraEnvio", fmt::format("{:02}:{:02}", now.hour, now.minute));
  row.Set("DataInicial", DataInicial);
  row.Set("DataFinal", DataFinal);
  row.Set("Ficheiro", Ficheiro);
  row.Set("Observa", Observa);
  if (ok) row.Set("Status", "OK");
  row.Update();
  return true;
}

}  // namespace korvel::automation
