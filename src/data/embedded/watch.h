#pragma once

namespace korvel::data::embedded {

class Session;

/// Sessions of this process with an open transaction, which a thread looks at from time to time: one that was killed
/// while it was idle has its transaction undone there, since its own thread may not come back for long.
class Watch {
 public:
  /// Twice is as good as once. A process that cannot have the thread leaves the undoing to the session's next call.
  static void Add(Session& session);
  /// Returns when the thread has let go of the session.
  static void Remove(Session& session);
};

}  // namespace korvel::data::embedded
