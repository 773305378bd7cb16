#include "gateways/desk.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <exception>
#include <thread>
#include <utility>

#include "gateways/work_box.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/regional_values.h"
#include "toolkit/progress_scope.h"
#include "toolkit/regional.h"

namespace korvel::desktop {

namespace {

/// Shorter work shows no box.
constexpr int kPatienceMilliseconds = 400;

}  // namespace

Desk::Desk(data::ServerSettings servers, const Ports& ports) : servers_(std::move(servers)), ports_(ports) {
  servers_.odbcDriver = ports_.settings.Read("Servers", "OdbcDriver").value_or(servers_.odbcDriver);
  session::TakeRegional(toolkit::LoadRegional(ports_.settings), session_);
  onEndProgram = [] { QApplication::exit(0); };
}

Desk::~Desk() = default;

void Desk::RunBeside(const std::function<void()>& work) {
  if (running_ == 0) progress_.Reset();
  std::exception_ptr failure;
  QEventLoop loop;
  bool ended = false;
  std::thread thread([&] {
    try {
      work();
    } catch (...) {
      failure = std::current_exception();
    }
    QMetaObject::invokeMethod(
        &loop,
        [&] {
          ended = true;
          loop.quit();
        },
        Qt::QueuedConnection);
  });
  ++running_;
  // What is typed in the first moments waits; it is not lost.
  QTimer::singleShot(kPatienceMilliseconds, &loop, [&loop] { loop.quit(); });
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  if (!ended) {
    WorkBox box(progress_, QApplication::activeWindow());
    box.show();
    loop.exec();
  }
  thread.join();
  --running_;
  if (running_ == 0 && progress_.WasObeyed()) {
    ports_.dialogs.Message(toolkit::Icon::Information,
                           "Operação cancelada: o que estava em curso foi desfeito.");
  }
  if (failure) std::rethrow_exception(failure);
}

bool Desk::Shown(const std::function<void()>& call) {
  try {
    call();
    return true;
  } catch (const session::EndProgram&) {
    onEndProgram();
  } catch (const toolkit::Cancelled&) {
    // RunBeside has said so.
  } catch (const std::exception& failure) {
    session::ShowFailure(Context(), failure);
  }
  return false;
}

void Desk::Remember(std::string_view section, std::string_view key, std::string_view value) {
  try {
    ports_.settings.Write(section, key, value);
  } catch (const std::exception& failure) {
    if (!std::exchange(toldStore_, true)) session::ShowFailure(Context(), failure);
  }
}

}  // namespace korvel::desktop
