#include "shell/version_watch.h"

#include <QMetaObject>

#include "data/error.h"
#include "session/entry/main_window.h"

namespace korvel::desktop {

namespace {

bool WentAhead(const session::Context& context) {
  try {
    return session::DatabaseWentAhead(context);
  } catch (const data::Error&) {
    return false;  // as a company that does not open: the next look comes soon
  }
}

}  // namespace

VersionWatch::~VersionWatch() {
  if (thread_.joinable()) thread_.join();
}

void VersionWatch::Look() {
  if (looking_) return;
  if (thread_.joinable()) thread_.join();
  looking_ = true;
  thread_ = std::thread([this, session = desk_.Session(), desk = desk_.Context()]() mutable {
    const bool newer =
        WentAhead({session, desk.servers, desk.dialogs, desk.progress, desk.settings, desk.clock});
    QMetaObject::invokeMethod(
        &screen_, [this, newer] { End(newer); }, Qt::QueuedConnection);
  });
}

void VersionWatch::End(bool newer) {
  looking_ = false;
  // While work goes on the news waits for the next look.
  if (newer && !desk_.IsBusy() && onNewer) onNewer();
}

}  // namespace korvel::desktop
