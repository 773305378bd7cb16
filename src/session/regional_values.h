#pragma once

#include "session/session_record.h"
#include "toolkit/dates.h"
#include "toolkit/ports.h"

namespace korvel::session {

/// Puts normalised regional values in the session record.
void TakeRegional(const toolkit::Regional& values, SessionRecord& session);

/// The date symbols of the session.
inline toolkit::DateMarks DateMarks(const SessionRecord& session) {
  return {session.gFormatoData, session.gSepData};
}

}  // namespace korvel::session
