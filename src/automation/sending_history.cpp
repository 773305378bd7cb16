#include "automation/sending_history.h"

#include <fmt/format.h>

#include "data/editable_recordset.h"
#include "data/sql_text.h"
#include "security/activity_log.h"
#include "session/connections.h"
#include "session/lookups.h"
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

std::vector<SentRun> ReadHistory(data::Connection& company) {
  std::vector<SentRun> runs;
  data::Recordset rows = company.Query("Select * from HistoricoEnvio Order by NumRegisto Desc");
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto text = [&](std::string_view column) { return std::string(rows.Text(column)); };
    runs.push_back({text("DataEnvio"), text("HoraEnvio"), text("DataInicial"), text("DataFinal"),
                    text("Observa"), text("Ficheiro"), rows.Text("Status") == "OK"});
  }
  return runs;
}

bool WasSent(data::Connection& company, const toolkit::DateSpan& dates) {
  return session::VerSeExiste(
      company, fmt::format("Select NumRegisto from HistoricoEnvio Where DataInicial={} and DataFinal={} "
                           "and Status='OK'",
                           data::Quoted(dates.first), data::Quoted(dates.last)));
}

bool EliminarHistorico(const session::Context& context, data::Connection& company) {
  if (!context.dialogs.ConfirmDeletion("", "Confirma a Eliminação?")) return false;
  company.Execute("Delete from HistoricoEnvio");
  security::InsertLog(context, {security::module::kTables, security::action::kDelete, "Histórico de Envio",
                                "Definições para Exportação Automática"});
  return true;
}

}  // namespace korvel::automation
