#include "periods/parameters.h"

#include <algorithm>

#include "data/editable_recordset.h"
#include "periods/company_connection.h"
#include "periods/parameter_columns.h"
#include "security/activity_log.h"
#include "security/rights_catalogue.h"
#include "session/lookups.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

using session::Context;
using toolkit::Icon;

constexpr std::string_view kTable = "ParamGeral";

bool Check(toolkit::Dialogs& dialogs, const Parameters& parameters, std::span<const Warehouse> warehouses) {
  if (toolkit::IsBlank(parameters.brevant.server) && toolkit::IsBlank(parameters.lunder.server)) {
    dialogs.Message(Icon::Warning, "Deve preencher pelo menos uma Localização (Brevant/Lunder)");
    dialogs.Focus("Servidor_Brevant");
    return false;
  }
  const bool classified = std::none_of(warehouses.begin(), warehouses.end(), [](const Warehouse& warehouse) {
    return toolkit::IsBlank(warehouse.classificacao);
  });
  if (classified) return true;
  dialogs.Message(Icon::Warning, "Não definiu os IVAS na grelha de Armazéns!");
  dialogs.Focus("lvwArmazens");
  return false;
}

/// Informs alone: both choices are kept, by design.
void WarnOfBothBalances(toolkit::Dialogs& dialogs, const Parameters& parameters) {
  if (!parameters.Header_ApenasDiarioSI || !parameters.Header_SaldoDiaAnterior) return;
  dialogs.Message(
      Icon::Information,
      "Apenas deve ligar na opção  GENERAL LEDGER - PLANO DE CONTAS:\n[Considerar apenas o \"Diário de "
      "Saldos Iniciais\" para cálculo de valores] ou [O Cálculo do Saldo é até ao dia anterior da Data "
      "Inicial do período definido]");
}

/// The first row, or a new one.
data::EditableRecordset EditRow(data::Connection& company) {
  std::optional<std::int64_t> key;
  {
    const auto first = company.Query("select top 1 NumRegisto from ParamGeral order by NumRegisto");
    if (!first.Eof()) key = first.Integer(0);
  }
  return key ? data::EditableRecordset::Edit(company, kTable, *key)
             : data::EditableRecordset::AddNew(company, kTable);
}

void SetColumns(data::EditableRecordset& row, std::span<const ParameterColumn> columns,
                const Parameters& parameters) {
  for (const ParameterColumn& column : columns) row.Set(column.name, ValueOf(column, parameters));
}

void Write(const Context& context, data::Connection& company, Parameters parameters,
           std::span<const Warehouse> warehouses) {
  if (parameters.EquivCliente == kEquivCodigo) parameters.AgrupaContasClientes = false;
  const data::DateTime now = session::Get_DataSysServer(company);
  data::Transaction transaction(company);
  auto row = EditRow(company);
  SetColumns(row, LocationColumns(), parameters);
  SetColumns(row, BehaviourColumns(), parameters);
  row.Set("Utilizador", std::string_view(context.session.gUtilizador));
  row.Set("DataSys", now);
  row.Update();
  ReplaceWarehouses(company, warehouses);
  transaction.Commit();
}

void LogSave(const Context& context, bool added) {
  const std::string_view caption = security::FormCaption("frmParamGeral");
  security::InsertLog(context,
                      {security::module::kTables, added ? security::action::kNew : security::action::kChange,
                       caption, caption});
}

}  // namespace

std::optional<Parameters> ReadParameters(data::Connection& company) {
  const auto row = company.Query("select * from ParamGeral order by NumRegisto");
  if (row.Eof()) return std::nullopt;
  Parameters parameters;
  for (const ParameterColumn& column : LocationColumns()) ReadColumn(column, row, parameters);
  for (const ParameterColumn& column : BehaviourColumns()) ReadColumn(column, row, parameters);
  return parameters;
}

bool LoadSessionParameters(const Context& context, data::Connection& company) {
  const auto row = company.Query("select * from ParamGeral order by NumRegisto");
  if (row.Eof()) return false;
  session::SessionRecord& session = context.session;
  session.gAnoAberto = row.Has("AnoAberto") ? row.Text("AnoAberto") : std::string_view();
  session.gContinuaAdicionar = row.Has("ContinuaAdicionar") && row.Text("ContinuaAdicionar") == "S";
  if (!row.IsNull("CasasDec")) session.gCasasDec = static_cast<int>(row.Integer("CasasDec"));
  return true;
}

bool GravarParametros(const Context& context, const Parameters& parameters,
                      std::span<const Warehouse> warehouses) {
  if (!Check(context.dialogs, parameters, warehouses)) return false;
  WarnOfBothBalances(context.dialogs, parameters);
  const auto company = OpenCompany(context);
  if (!company) return false;
  const bool added = !session::VerSeExiste(*company, "select NumRegisto from ParamGeral");
  Write(context, *company, parameters, warehouses);
  LogSave(context, added);
  LoadSessionParameters(context, *company);
  return true;
}

std::optional<Links> ActivarLigacoes(const Context& context, const Parameters& parameters) {
  const auto company = OpenCompany(context);
  if (!company) return std::nullopt;
  auto row = EditRow(*company);
  SetColumns(row, LocationColumns(), parameters);
  row.Update();
  company->Close();
  return VerLigacoes(context, parameters.brevant, parameters.lunder);
}

}  // namespace korvel::periods
