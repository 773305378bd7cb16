#include "gateways/row_feed.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace korvel::desktop {

namespace {

/// Rows read before somebody asks for them.
constexpr std::size_t kAhead = 2000;

struct Stopped {};

}  // namespace

RowFeed::RowFeed(Reader reader) : thread_([this, reader = std::move(reader)] { Read(reader); }) {}

RowFeed::~RowFeed() {
  {
    const std::lock_guard lock(guard_);
    stopped_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void RowFeed::Read(const Reader& reader) {
  std::exception_ptr failure;
  try {
    reader([this](const periods::GridRow& row) { Put(row); });
  } catch (const Stopped&) {
    // Nobody wants more.
  } catch (...) {
    failure = std::current_exception();
  }
  const std::lock_guard lock(guard_);
  failure_ = failure;
  ended_ = true;
  changed_.notify_all();
}

void RowFeed::Put(const periods::GridRow& row) {
  std::unique_lock lock(guard_);
  changed_.wait(lock, [this] { return stopped_ || ahead_.size() < std::max(kAhead, wanted_); });
  if (stopped_) throw Stopped();
  ahead_.push_back(row);
  changed_.notify_all();
}

std::vector<periods::GridRow> RowFeed::Take(std::size_t most) {
  std::unique_lock lock(guard_);
  wanted_ = most;
  changed_.notify_all();
  changed_.wait(lock, [&] { return ended_ || ahead_.size() >= most; });
  wanted_ = 0;
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  const auto end = ahead_.begin() + static_cast<std::ptrdiff_t>(std::min(most, ahead_.size()));
  std::vector<periods::GridRow> rows(std::make_move_iterator(ahead_.begin()), std::make_move_iterator(end));
  ahead_.erase(ahead_.begin(), end);
  changed_.notify_all();
  return rows;
}

bool RowFeed::AtEnd() const {
  std::unique_lock lock(guard_);
  changed_.wait(lock, [this] { return ended_ || !ahead_.empty(); });
  return ended_ && ahead_.empty();
}

}  // namespace korvel::desktop
