#pragma once

#include "data/connect.h"
#include "session/session_record.h"
#include "toolkit/ports.h"

namespace korvel::session {

/// All that an operation may touch beyond its arguments. References outlive the operation; nobody keeps a Context.
struct Context {
  SessionRecord& session;
  const data::ServerSettings& servers;
  toolkit::Dialogs& dialogs;
  toolkit::Progress& progress;
  toolkit::Settings& settings;
  const toolkit::Clock& clock;
};

}  // namespace korvel::session
