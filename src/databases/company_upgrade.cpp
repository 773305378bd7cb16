#include "databases/company_upgrade.h"

#include "databases/company_schema.h"
#include "databases/schema_upgrade.h"
#include "databases/sql_admin.h"
#include "databases/widening.h"
#include "session/connections.h"

namespace korvel::databases {

namespace {

void CreatePeriodIndex(data::Connection& company, PassedOver& passedOver) {
  passedOver.Try(std::string(kPeriodIndex.name), [&] {
    SQLCreateIndex(company, kPeriodIndex.name, kPeriodIndex.table, kPeriodIndex.fields, true);
  });
}

/// The one change that this system makes to a source database, deliberate.
void AddToBilling(const session::Context& context, PassedOver& passedOver) {
  passedOver.Try("Log_MovTerceiro", [&] {
    session::ConnectionPtr billing;
    if (!session::AbreConnection_bln(context, billing, session::kBrevant)) return;
    SQLAddField(*billing, Nullable("varchar(50)"), "DataSys", "Log_MovTerceiro");
    billing->Execute("Update Log_MovTerceiro set DataSys='' where DataSys is null");
  });
}

void RunStages(const session::Context& context, data::Connection& company, PassedOver& passedOver) {
  for (const Stage stage : kStages) {
    // The billing database is reached through the parameters, which the stages before have made.
    if (stage == Stage::Mapping) AddToBilling(context, passedOver);
    CreateTables(company, CompanySchema(), stage, passedOver);
    if (stage == Stage::Base) CreatePeriodIndex(company, passedOver);
    ChangeColumns(company, CompanySchema(), stage, passedOver);
  }
}

bool IsReadOnly(data::Connection& master, const std::string& database) {
  try {
    return CheckForReadOnly(master, database);
  } catch (const data::Error&) {
    return false;  // a server that cannot tell has no such state
  }
}

/// Makes a read-only database writable for as long as it lives. One that stays read-only gets the same run; all its
/// writes are passed over.
class WritableMeanwhile {
 public:
  WritableMeanwhile(data::Connection& master, const std::string& database, const UpgradeRun& run)
      : master_(master), database_(database), run_(run), wasReadOnly_(IsReadOnly(master, database)) {
    if (wasReadOnly_) ForceReadOnly(master_, database_, false, run_.pause);
  }
  ~WritableMeanwhile() {
    if (wasReadOnly_) ForceReadOnly(master_, database_, true, run_.pause);
  }
  WritableMeanwhile(const WritableMeanwhile&) = delete;
  WritableMeanwhile& operator=(const WritableMeanwhile&) = delete;

 private:
  data::Connection& master_;
  const std::string& database_;
  const UpgradeRun& run_;
  bool wasReadOnly_;
};

}  // namespace

UpgradeResult ActDBaseExecuta(const session::Context& context, const std::string& database, UpgradeRun& run) {
  session::ConnectionPtr master;
  if (!session::OpenSessionDatabase(context, master, "master")) {
    session::ShowConnectionError(context);
    return {};
  }
  const WritableMeanwhile writable(*master, database, run);
  session::ConnectionPtr company;
  if (!session::OpenSessionDatabase(context, company, database)) {
    session::ShowConnectionError(context);
    return {};
  }
  if (context.session.gBaseDados.empty()) context.session.gBaseDados = database;
  ChangeCompatibility(context, *master, database, run);
  PassedOver passedOver;
  RunStages(context, *company, passedOver);
  WriteVersion(*company, passedOver);
  WidenLoginColumns(*company, passedOver);
  return {true, passedOver.Failures()};
}

UpgradeResult ActDBaseExecuta(const session::Context& context, const std::string& database) {
  UpgradeRun run;
  return ActDBaseExecuta(context, database, run);
}

}  // namespace korvel::databases
