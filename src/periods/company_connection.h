#pragma once

#include "session/connections.h"

namespace korvel::periods {

/// The connection of the session's company; null when it does not open, which is shown.
inline session::ConnectionPtr OpenCompany(const session::Context& context) {
  session::ConnectionPtr company;
  if (session::OpenSessionDatabase(context, company, context.session.gBaseDados)) return company;
  session::ShowConnectionError(context);
  return nullptr;
}

}  // namespace korvel::periods
