#include "periods/entity.h"

#include <array>
#include <string_view>

#include "data/editable_recordset.h"
#include "security/activity_log.h"
#include "security/rights_catalogue.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"

namespace korvel::periods {

namespace {

using session::Context;

struct EntityColumn {
  std::string_view name;
  std::string Entity::*member;
};
constexpr std::array<EntityColumn, 14> kColumns{{
    {"NomeEntidade", &Entity::NomeEntidade},
    {"Morada", &Entity::Morada},
    {"Local", &Entity::Local},
    {"CodigoPostal", &Entity::CodigoPostal},
    {"Telefones", &Entity::Telefones},
    {"Contribuinte", &Entity::Contribuinte},
    {"SMTPServer", &Entity::SMTPServer},
    {"SMTPLogin", &Entity::SMTPLogin},
    {"SMTPPassword", &Entity::SMTPPassword},
    {"EmailOrigem", &Entity::EmailOrigem},
    {"FtpServer", &Entity::FtpServer},
    {"FtpUser", &Entity::FtpUser},
    {"FtpPWD", &Entity::FtpPWD},
    {"FTPPath", &Entity::FTPPath},
}};

/// Runs `work(config)`; what fails is shown, and gives `failed`.
template <typename Result, typename Work>
Result OnConfig(const Context& context, Result failed, const Work& work) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) {
    session::ShowConnectionError(context);
    return failed;
  }
  return session::Reported(context, failed, [&] { return work(*config); });
}

Entity ReadEntity(data::Connection& config) {
  Entity entity;
  const auto row = config.Query("Select * from Entidade");
  if (row.Eof()) return entity;
  for (const EntityColumn& column : kColumns) {
    if (!row.IsNull(column.name)) entity.*column.member = row.Text(column.name);
  }
  return entity;
}

/// The first row, or a new one.
data::EditableRecordset EditRow(data::Connection& config, std::int64_t key) {
  constexpr std::string_view kTable = "Entidade";
  return key == 0 ? data::EditableRecordset::AddNew(config, kTable)
                  : data::EditableRecordset::Edit(config, kTable, key);
}

std::int64_t FirstKey(data::Connection& config) {
  const auto first = config.Query("Select NumRegisto from Entidade");
  return first.Eof() ? 0 : first.Integer(0);
}

void Log(const Context& context, data::Connection& config, const Entity& entity, bool added) {
  security::InsertLog(context, config,
                      {security::module::kTables, added ? security::action::kNew : security::action::kChange,
                       entity.NomeEntidade, security::FormCaption("frmAAResponsavel")});
}

}  // namespace

std::optional<Entity> CarregarEntidade(const Context& context) {
  return OnConfig(context, std::optional<Entity>(),
                  [](data::Connection& config) { return std::optional(ReadEntity(config)); });
}

bool GravarEntidade(const Context& context, const Entity& entity) {
  return OnConfig(context, false, [&](data::Connection& config) {
    const std::int64_t key = FirstKey(config);
    const data::DateTime now = session::Get_DataSysServer(config);
    auto row = EditRow(config, key);
    for (const EntityColumn& column : kColumns) row.Set(column.name, entity.*column.member);
    row.Set("Utilizador", std::string_view(context.session.gUtilizador));
    row.Set("DataSys", now);
    row.Update();
    context.session.gNomeEntidade = entity.NomeEntidade;
    Log(context, config, entity, key == 0);
    return true;
  });
}

}  // namespace korvel::periods
