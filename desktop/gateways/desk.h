#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "gateways/work_progress.h"
#include "session/context.h"

class QWidget;

namespace korvel::desktop {

/// What every window works with: the session, the ports, and the one way to call the core. One a program; windows hold
/// a reference.
///
/// The core never runs on the screen's thread: Run hands it to a thread of its own and lets events through until it
/// has ended. Nothing can be typed or clicked meanwhile but in the boxes that the work shows, so that no second work
/// begins and no window closes under the first.
class Desk {
 public:
  /// References outlive the desk.
  struct Ports {
    toolkit::Dialogs& dialogs;  // called from any thread
    toolkit::Settings& settings;
    const toolkit::Clock& clock;
  };

  Desk(data::ServerSettings servers, const Ports& ports);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk();

  session::SessionRecord& Session() { return session_; }
  toolkit::Dialogs& Dialogs() { return ports_.dialogs; }
  toolkit::Settings& Settings() { return ports_.settings; }
  const toolkit::Clock& Clock() const { return ports_.clock; }
  session::Context Context() {
    return {session_, servers_, ports_.dialogs, progress_, ports_.settings, ports_.clock};
  }

  /// Calls `work` with the Context on a thread of its own and gives back its result; what it throws comes out here.
  template <typename Work>
  auto Run(const Work& work) {
    using Result = std::invoke_result_t<Work, const session::Context&>;
    if constexpr (std::is_void_v<Result>) {
      RunBeside([&] { work(Context()); });
    } else {
      std::optional<Result> result;
      RunBeside([&] { result.emplace(work(Context())); });
      return std::move(*result);
    }
  }

  /// As Run, but what `work` throws is shown: nothing comes back then, or false for work without a result.
  template <typename Work>
  auto Try(const Work& work) {
    using Result = std::invoke_result_t<Work, const session::Context&>;
    if constexpr (std::is_void_v<Result>) {
      return Shown([&] { Run(work); });
    } else {
      std::optional<Result> result;
      Shown([&] { result.emplace(Run(work)); });
      return result;
    }
  }

  /// Calls `call` where it stands. What it throws is shown, and false comes back then.
  bool Shown(const std::function<void()>& call);

  /// Keeps what a window remembers, such as its size. A store that cannot be written is told once, not at every window.
  void Remember(std::string_view section, std::string_view key, std::string_view value);

  /// While work goes on.
  bool IsBusy() const { return running_ > 0; }

  /// What to do when the core asks for the end of the program; the default leaves the event loop.
  std::function<void()> onEndProgram;

 private:
  void RunBeside(const std::function<void()>& work);

  data::ServerSettings servers_;
  Ports ports_;
  session::SessionRecord session_;
  WorkProgress progress_;
  int running_ = 0;
  bool toldStore_ = false;
};

}  // namespace korvel::desktop
