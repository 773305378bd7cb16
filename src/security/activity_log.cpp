#include "security/activity_log.h"

#include <array>
#include <string>

#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

using session::Context;

data::ProcedureArgument Text(std::string_view text, std::size_t length) {
  return {data::Value(toolkit::CutTo(text, length))};
}

}  // namespace

bool InsertLog(const Context& context, data::Connection& config, const LogLine& line) {
  const session::SessionRecord& session = context.session;
  const std::string_view company = toolkit::IsBlank(line.company) ? session.gCodEmpresa : line.company;
  std::array arguments{Text(company, 4),
                       Text(session.gDescEmpresa, 50),
                       Text(line.module, 2),
                       Text(line.action, 1),
                       data::ProcedureArgument{data::Value(line.text)},
                       Text(line.caption, 100),
                       data::ProcedureArgument{data::Value(line.value)},
                       Text(session.gUtilizador, 20),
                       Text(line.dataMov, 10),
                       Text(line.hora, 5)};
  try {
    config.Call("InsertLog", arguments);
    return true;
  } catch (const data::Error&) {
    return false;  // asked for: logging never stops what it logs
  }
}

bool InsertLog(const Context& context, const LogLine& line) {
  session::SessionRecord& session = context.session;
  const auto number = session.gErroNumero;
  const std::string description = session.gErroDescricao;
  session::ConnectionPtr config;
  if (session::OpenSessionDatabase(context, config, session::kConfigDatabase))
    return InsertLog(context, *config, line);
  session.gErroNumero = number;
  session.gErroDescricao = description;
  return false;
}

}  // namespace korvel::security
