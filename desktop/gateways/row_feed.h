#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "periods/staging.h"

namespace korvel::desktop {

/// Rows that a reader brings one after another, read ahead on a thread of its own, but never further than a screen
/// needs: there may be a million of them.
class RowFeed {
 public:
  /// Takes the next row; throws when nobody wants more, which the reader lets pass.
  using Sink = std::function<void(const periods::GridRow&)>;
  /// Hands over its rows and returns. Runs on the feed's thread; what it captures outlives the feed.
  using Reader = std::function<void(const Sink&)>;

  explicit RowFeed(Reader reader);
  /// Stops the reader.
  ~RowFeed();
  RowFeed(const RowFeed&) = delete;
  RowFeed& operator=(const RowFeed&) = delete;

  /// The next rows, `most` at the most, in their order; fewer only at the end. Waits for them; throws what the reader
  /// threw.
  std::vector<periods::GridRow> Take(std::size_t most);
  /// Whether all rows were taken; waits until that is known.
  bool AtEnd() const;

 private:
  void Read(const Reader& reader);
  void Put(const periods::GridRow& row);

  mutable std::mutex guard_;
  mutable std::condition_variable changed_;
  std::deque<periods::GridRow> ahead_;
  std::size_t wanted_ = 0;
  bool ended_ = false;
  bool stopped_ = false;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace korvel::desktop
