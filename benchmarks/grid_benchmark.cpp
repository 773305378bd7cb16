// What a user waits for in a review grid of so many staged lines: the first screen, scrolling, the end, a sort; and the
// longest pause in which the window takes no events. Argument: how many lines. Wants a Qt platform, such as offscreen.

#include <fmt/format.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTimer>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <memory>
#include <string>

#include "accounting/ledger_entries.h"
#include "gateways/desk.h"
#include "measure.h"
#include "shell/looks.h"
#include "support/scripted_ports.h"
#include "widgets/grid_panel.h"

namespace korvel::benchmarks {
namespace {

using desktop::GridPanel;
using desktop::RowFeed;

constexpr int kPauseMark = 100;  // milliseconds
constexpr std::size_t kScrolledTo = 10'000;

/// The longest time between two events while it lives.
class Pulse {
 public:
  Pulse() {
    clock_.start();
    QObject::connect(&timer_, &QTimer::timeout, [this] { Beat(); });
    timer_.start(0);
  }
  int Longest() {
    Beat();
    return static_cast<int>(longest_);
  }

 private:
  void Beat() { longest_ = std::max(longest_, clock_.restart()); }

  QTimer timer_;
  QElapsedTimer clock_;
  qint64 longest_ = 0;
};

long ResidentBytes() {
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * ::sysconf(_SC_PAGESIZE);
}

/// A window with a grid of the ledger's lines, which a feed brings.
class GridBenchmark {
 public:
  explicit GridBenchmark(std::size_t lines) : lines_(lines) {
    panel_.resize(1200, 600);
    panel_.show();
    QApplication::processEvents();
    before_ = ResidentBytes();
  }

  void Run() {
    Step("first screen", [&] { panel_.Model().SetFeed(Feed()); });
    Step("scrolled to 10,000 lines", [&] { Scroll(); });
    Step("read to the end", [&] { panel_.Model().ReadAll(); });
    Step("sorted on a text", [&] { panel_.Model().SortOn(Column("Description")); });
    Step("ticks inverted", [&] { panel_.Model().InvertTicks(); });
  }

 private:
  void Step(std::string_view what, const std::function<void()>& work) {
    Pulse pulse;
    const Seconds time = TimeOf([&] {
      work();
      QApplication::processEvents();
    });
    const int pause = pulse.Longest();
    fmt::print("{:<28} {:7.2f} s  longest pause {:4} ms  mark {}  {}  +{} MB\n", what, time.count(), pause,
               kPauseMark, pause <= kPauseMark ? "met" : "MISSED", (ResidentBytes() - before_) >> 20);
  }

  void Scroll() {
    QScrollBar& bar = *panel_.View().verticalScrollBar();
    while (panel_.Model().Rows().size() < std::min(kScrolledTo, lines_)) {
      bar.setValue(bar.maximum());
      QApplication::processEvents();
    }
  }

  std::unique_ptr<RowFeed> Feed() const {
    return std::make_unique<RowFeed>([lines = lines_](const RowFeed::Sink& sink) {
      const std::size_t columns = accounting::MovimentosTable().columns.size();
      for (std::size_t line = 0; line < lines; ++line) {
        periods::GridRow row;
        // A number that comes in no order, so that a sort has something to do.
        for (std::size_t i = 0; i < columns; ++i)
          row.cells.push_back(fmt::format("{:07}", (line * 7919 + i) % 1'000'003));
        sink(row);
      }
    });
  }

  static std::size_t Column(std::string_view staged) {
    const auto columns = accounting::MovimentosTable().columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (columns[i].staged == staged) return i;
    }
    throw std::runtime_error("no column " + std::string(staged));
  }

  std::size_t lines_;
  test::ScriptedDialogs dialogs_;
  test::MemorySettings settings_;
  test::FixedClock clock_;
  desktop::Desk desk_{{}, {dialogs_, settings_, clock_}};
  GridPanel panel_{desk_, "frmGeneralLedgerEntriesLunder", "lvwDocumentos",
                   desktop::GridColumnsOf(accounting::MovimentosTable().columns), true};
  long before_ = 0;
};

}  // namespace
}  // namespace korvel::benchmarks

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  korvel::desktop::ApplyLooks(application, korvel::desktop::Theme::Light);
  try {
    korvel::benchmarks::GridBenchmark(argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1'000'000).Run();
    return 0;
  } catch (const std::exception& failure) {
    fmt::print(stderr, "{}\n", failure.what());
    return 1;
  }
}
