#include "periods/period_editor.h"

#include <fmt/format.h>

#include <utility>

#include "data/editable_recordset.h"
#include "data/sql_text.h"
#include "databases/version.h"
#include "periods/company_connection.h"
#include "periods/staged_tables.h"
#include "security/activity_log.h"
#include "security/rights_catalogue.h"
#include "session/lookups.h"
#include "toolkit/dates.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

using session::Context;
using toolkit::Icon;

constexpr std::string_view kAttention = "ATENÇÃO :";
constexpr std::string_view kListForm = "frmTabHeader";

PeriodHeader NewHeader(const Context& context, data::Connection& company) {
  PeriodHeader header;
  header["CurrencyCode"] = "EUR";
  header["ProductCompanyTaxId"] = kProductCompanyTaxId;
  header["ProductID"] = kProductId;
  CarregarTemplate(company, header);
  header["AuditFileVersion"] = kAuditFileVersion;
  header["StartDate"].clear();
  header["EndDate"].clear();
  header["Country"] = "PT";
  header["ProductVersion"] = databases::ProgramVersion();
  context.dialogs.Focus("FiscalYear");
  return header;
}

/// The row as the form shows it: a kind kept as a long text by its first letter.
std::optional<PeriodHeader> ReadHeader(data::Connection& company, std::int64_t numRegisto) {
  const auto row = company.Query("Select * from TabHeader Where NumRegisto=?", {numRegisto});
  if (row.Eof()) return std::nullopt;
  PeriodHeader header;
  header.numRegisto = numRegisto;
  for (const HeaderField& field : HeaderFields()) header[field.column] = row.Text(field.column);
  header["ProductID"] = kProductId;
  return header;
}

/// Rows of an earlier version hold the kind as a long text: they can be seen and deleted, not changed, on purpose.
bool OfEarlierVersion(const PeriodHeader& header) {
  return header["TaxAccountingBasis"].size() != 1;
}

std::optional<OpenedHeader> OpenExisting(const Context& context, data::Connection& company, HeaderMode mode,
                                         std::int64_t numRegisto) {
  auto header = ReadHeader(company, numRegisto);
  if (!header) {
    context.dialogs.Message(Icon::Warning, "Esse Registo Foi Eliminado por outro Utilizador !", kAttention);
    return std::nullopt;
  }
  const bool earlier = OfEarlierVersion(*header);
  std::string& basis = (*header)["TaxAccountingBasis"];
  basis = toolkit::CutTo(basis, 1);
  if (mode == HeaderMode::Change) {
    if (earlier) {
      context.dialogs.Message(Icon::Warning, "Este registo é de uma versão anterior. Apenas pode Visualizar");
    }
    context.dialogs.Focus("CompanyID");
  }
  return OpenedHeader{*std::move(header), mode == HeaderMode::Change && !earlier};
}

void Tell(toolkit::Dialogs& dialogs, const HeaderFault& fault) {
  if (!fault.message.empty()) dialogs.Message(Icon::Warning, fault.message);
  dialogs.Focus(fault.column);
}

bool IsTaken(data::Connection& company, const PeriodKey& period) {
  return session::VerSeExiste(company, "Select FiscalYear from TabHeader Where " + period.Condition());
}

bool IsThere(data::Connection& company, std::int64_t numRegisto) {
  return session::VerSeExiste(company,
                              fmt::format("Select * from TabHeader Where NumRegisto ={}", numRegisto));
}

bool IsPeriodColumn(std::string_view column) {
  return column == "FiscalYear" || column == "StartDate" || column == "EndDate";
}

void SetColumns(const Context& context, data::EditableRecordset& row, HeaderMode mode,
                const PeriodHeader& header) {
  for (const HeaderField& field : HeaderFields()) {
    // A period's key is written once and never changes.
    if (IsPeriodColumn(field.column) && mode != HeaderMode::New) continue;
    row.Set(field.column, std::string_view(header[field.column]));
  }
  const data::DateTime now = context.clock.Now();
  row.Set("DataSys", data::DateTime{now.year, now.month, now.day});
  row.Set("Utilizador", std::string_view(context.session.gUtilizador));
}

/// False when the row has gone.
bool Write(const Context& context, data::Connection& company, HeaderMode mode, PeriodHeader& header) {
  data::Transaction transaction(company);
  if (mode == HeaderMode::Change && !IsThere(company, header.numRegisto)) return false;
  header["Country"] = toolkit::Upper(header["Country"]);
  header["ProductID"] = kProductId;
  auto row = mode == HeaderMode::New
                 ? data::EditableRecordset::AddNew(company, kHeaderTable)
                 : data::EditableRecordset::Edit(company, kHeaderTable, header.numRegisto);
  SetColumns(context, row, mode, header);
  const std::int64_t key = row.Update();
  transaction.Commit();
  header.numRegisto = key;
  return true;
}

void LogSave(const Context& context, HeaderMode mode, const PeriodHeader& header) {
  const std::string_view action =
      mode == HeaderMode::New ? security::action::kNew : security::action::kChange;
  const std::string text = LogText(header["FiscalYear"], header["CompanyName"]);
  security::InsertLog(context, {security::module::kTables, action, text, EntryCaption(mode)});
}

PeriodListItem ReadItem(const session::SessionRecord& session, const data::Recordset& row) {
  PeriodListItem item;
  item.numRegisto = row.Integer("NumRegisto");
  item.period = {std::string(row.Text("FiscalYear")), std::string(row.Text("StartDate")),
                 std::string(row.Text("EndDate"))};
  item.companyName = row.Text("CompanyName");
  item.basis = row.Text("MTaxAccountingBasis");
  item.auditFileVersion = row.Text("AuditFileVersion");
  item.utilizador = row.Text("utilizador");
  item.dataSys = toolkit::GData(row.Text("datasys"), {session.gFormatoData, session.gSepData});
  item.cliente = row.Text("Cliente");
  return item;
}

/// The list of periods, narrowed by a condition that may be empty or begins with " and ".
std::vector<PeriodListItem> ReadItems(const Context& context, data::Connection& company,
                                      std::string_view condition, data::Parameters values = {}) {
  auto rows = company.Query(
      fmt::format(
          "Select *,MTaxAccountingBasis=substring(TaxAccountingBasis,1,1) from TabHeader {}{} Order By "
          "FiscalYear,StartDate,NumRegisto",
          condition.empty() ? "" : " Where NumRegisto>0 ", condition),
      values);
  std::vector<PeriodListItem> items;
  for (; !rows.Eof(); rows.MoveNext()) items.push_back(ReadItem(context.session, rows));
  return items;
}

std::optional<PeriodListItem> FirstOf(std::vector<PeriodListItem> items) {
  if (items.empty()) return std::nullopt;
  return std::move(items.front());
}

bool ConfirmDeletion(toolkit::Dialogs& dialogs, const PeriodListItem& item) {
  constexpr std::string_view kWarning = "MUITA ATENÇÃO";
  dialogs.Message(
      Icon::Warning,
      "Note que ao eliminar este registo, vão ser também ELIMINADOS todos os HISTÓRICOS para esta "
      "Periodicidade!",
      kWarning);
  dialogs.Message(Icon::Warning, "ESTE PROCESSO É IRREVERSÍVEL!", kWarning);
  // The closing apostrophe is missing, and stays so.
  return dialogs.ConfirmDeletion(
      "Confirmar Eliminação :",
      fmt::format("Pretende Eliminar o Registo '{}?", LogText(item.period.fiscalYear, item.companyName)));
}

}  // namespace

std::string EntryCaption(HeaderMode mode) {
  std::string_view entry = " - Consulta de Registo :";
  if (mode == HeaderMode::New) entry = " - Entrada de Registos :";
  if (mode == HeaderMode::Change) entry = " - Alteração de Registo :";
  return std::string(security::FormCaption(kListForm)).append(entry);
}

std::string LogText(std::string_view fiscalYear, std::string_view companyName) {
  return fmt::format("{} - {}", fiscalYear, companyName);
}

std::optional<OpenedHeader> OpenHeader(const Context& context, HeaderMode mode, std::int64_t numRegisto) {
  const auto company = OpenCompany(context);
  if (!company) return std::nullopt;
  std::optional<OpenedHeader> opened;
  if (mode == HeaderMode::New) {
    opened = OpenedHeader{NewHeader(context, *company)};
  } else {
    opened = OpenExisting(context, *company, mode, numRegisto);
  }
  if (!opened) return std::nullopt;
  context.dialogs.Message(
      Icon::Information,
      "Verifique as indicações que são apresentadas em cada um dos campos.\n(posicionando o "
      "cursor do rato em cima do respectivo campo)",
      "INFORMAÇÃO");
  return opened;
}

bool GravarHeader(const Context& context, HeaderMode mode, PeriodHeader& header) {
  if (const auto fault = CheckHeader(header)) {
    Tell(context.dialogs, *fault);
    return false;
  }
  const auto company = OpenCompany(context);
  if (!company) return false;
  if (mode == HeaderMode::New && IsTaken(*company, header.Key())) {
    context.dialogs.Message(Icon::Warning, "Período já Configurado !", kAttention);
    context.dialogs.Focus("StartDate");
    return false;
  }
  if (Write(context, *company, mode, header)) {
    LogSave(context, mode, header);
    return true;
  }
  context.dialogs.Message(Icon::Warning, "Esse Registo foi Eliminado por Outro Utilizador !", kAttention);
  header.numRegisto = 0;
  return false;
}

std::vector<PeriodListItem> ListPeriods(const Context& context, data::Connection& company,
                                        std::string_view filter) {
  return ReadItems(context, company, filter);
}

std::vector<PeriodListItem> SearchPeriods(const Context& context, data::Connection& company,
                                          const PeriodSearch& search) {
  const std::pair<std::string_view, std::string> starts[] = {{"FiscalYear", search.fiscalYear + "%"},
                                                             {"CompanyName", search.companyName + "%"}};
  std::string condition;
  std::vector<data::Parameter> values;
  for (const auto& [column, start] : starts) {
    if (start == "%") continue;  // which would leave out what is NULL
    condition += fmt::format(" and {} like ?", column);
    values.emplace_back(start);
  }
  return ReadItems(context, company, condition, values);
}

std::optional<PeriodListItem> FindPeriod(const Context& context, data::Connection& company,
                                         const PeriodKey& period) {
  return FirstOf(ReadItems(context, company, " and " + period.Condition()));
}

std::optional<PeriodListItem> FindPeriod(const Context& context, data::Connection& company,
                                         std::int64_t numRegisto) {
  return FirstOf(ReadItems(context, company, fmt::format(" and NumRegisto={}", numRegisto)));
}

bool EliminarHeader(const Context& context, const std::vector<PeriodListItem>& selected) {
  if (selected.size() != 1) {
    context.dialogs.Message(Icon::Warning, "Apenas pode seleccionar um registo para eliminar.");
    return false;
  }
  const PeriodListItem& item = selected.front();
  if (!ConfirmDeletion(context.dialogs, item)) return false;
  const auto company = OpenCompany(context);
  if (!company) return false;
  data::Transaction transaction(*company);
  DeletePeriodRows(*company, item.period, item.cliente, true);
  transaction.Commit();
  const std::string text = LogText(item.period.fiscalYear, item.companyName);
  security::InsertLog(context, {security::module::kTables, security::action::kDelete, text,
                                security::FormCaption(kListForm)});
  return true;
}

}  // namespace korvel::periods
