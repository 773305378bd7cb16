#include "databases/company_upgrade.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "databases/company_schema.h"
#include "databases/sql_admin.h"
#include "databases/version.h"
#include "databases/widening.h"
#include "session/connections.h"

namespace korvel::databases {

namespace {

std::string Nullable(std::string_view type) {
  return fmt::format("{} NULL", type);
}

/// One run over one company database.
class CompanyUpgrade {
 public:
  CompanyUpgrade(const session::Context& context, data::Connection& master, data::Connection& company,
                 const std::string& database)
      : context_(context), master_(master), company_(company), database_(database) {}

  void Run() {
    ChangeCompatibility();
    for (const Stage stage : kStages) {
      // The billing database is reached through the parameters, which the stages before have made.
      if (stage == Stage::Mapping) AddToBilling();
      RunStage(stage);
    }
    WriteVersion();
    WidenLoginColumns(company_, passedOver_);
  }

  const std::vector<Failed>& Failures() const { return passedOver_.Failures(); }

 private:
  void ChangeCompatibility() {
    try {
      SQL_ChangeDbCompLevel(master_, database_);
    } catch (const data::Error& error) {
      context_.dialogs.Message(toolkit::Icon::Critical, fmt::format("ChangeDBCompLevel\n{}", error.what()));
    }
  }

  void RunStage(Stage stage) {
    for (const TableDefinition& table : CompanySchema()) {
      if (table.created == stage) Create(table);
    }
    if (stage == Stage::Base) CreatePeriodIndex();
    for (const TableDefinition& table : CompanySchema()) {
      for (const ColumnDefinition& column : table.columns) ChangeColumn(table, column, stage);
    }
  }

  void Create(const TableDefinition& table) {
    if (table.bare) {
      passedOver_.Try(fmt::format("create table {}", table.name),
                      [&] { SQLCreateTable(company_, table.name); });
    } else {
      passedOver_.Run(company_, CreateTableStatement(table));
    }
  }

  void CreatePeriodIndex() {
    passedOver_.Try(std::string(kPeriodIndex.name), [&] {
      SQLCreateIndex(company_, kPeriodIndex.name, kPeriodIndex.table, kPeriodIndex.fields, true);
    });
  }

  void ChangeColumn(const TableDefinition& table, const ColumnDefinition& column, Stage stage) {
    const bool addedLater = table.bare || column.added != table.created;
    if (addedLater && column.added == stage) Add(table, column);
    if (!column.firstType.empty() && column.widened == stage) {
      passedOver_.Try(fmt::format("{}.{}", table.name, column.name),
                      [&] { SQLChangeField(company_, Nullable(column.type), column.name, table.name); });
    }
  }

  void Add(const TableDefinition& table, const ColumnDefinition& column) {
    const auto type = column.firstType.empty() ? column.type : column.firstType;
    passedOver_.Try(fmt::format("{}.{}", table.name, column.name),
                    [&] { SQLAddField(company_, Nullable(type), column.name, table.name); });
    if (column.existing.empty()) return;
    passedOver_.Run(company_, fmt::format("Update {0} set {1}={2} where {1} is null", table.name, column.name,
                                          column.existing));
  }

  /// The one change that this system makes to a source database, deliberate.
  void AddToBilling() {
    passedOver_.Try("Log_MovTerceiro", [&] {
      session::ConnectionPtr billing;
      if (!session::AbreConnection_bln(context_, billing, session::kBrevant)) return;
      SQLAddField(*billing, Nullable("varchar(50)"), "DataSys", "Log_MovTerceiro");
      billing->Execute("Update Log_MovTerceiro set DataSys='' where DataSys is null");
    });
  }

  void WriteVersion() {
    passedOver_.Try("Actualiza", [&] {
      const bool empty =
          company_.Query("Select IsNull(Count(*),0) as Contagem from Actualiza").Integer(0) == 0;
      if (empty) company_.Execute("Insert Into Actualiza (Versao) Values ('')");
      company_.Execute(fmt::format("Update Actualiza Set Versao={}", data::Quoted(SchemaVersion())));
    });
  }

  const session::Context& context_;
  data::Connection& master_;
  data::Connection& company_;
  const std::string& database_;
  PassedOver passedOver_;
};

bool IsReadOnly(data::Connection& master, const std::string& database) {
  try {
    return CheckForReadOnly(master, database);
  } catch (const data::Error&) {
    return false;  // a server that cannot tell has no such state
  }
}

}  // namespace

UpgradeResult ActDBaseExecuta(const session::Context& context, const std::string& database) {
  session::ConnectionPtr master;
  session::ConnectionPtr company;
  if (!session::OpenSessionDatabase(context, master, "master")) {
    session::ShowConnectionError(context);
    return {};
  }
  const bool wasReadOnly = IsReadOnly(*master, database);
  // A database that stays read-only gets the same run; all its writes are passed over.
  if (wasReadOnly) ForceReadOnly(*master, database, false);
  if (!session::OpenSessionDatabase(context, company, database)) {
    session::ShowConnectionError(context);
    return {};
  }
  if (context.session.gBaseDados.empty()) context.session.gBaseDados = database;
  CompanyUpgrade upgrade(context, *master, *company, database);
  upgrade.Run();
  company->Close();
  if (wasReadOnly) ForceReadOnly(*master, database, true);
  return {true, upgrade.Failures()};
}

}  // namespace korvel::databases
