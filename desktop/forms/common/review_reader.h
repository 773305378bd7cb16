#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "gateways/desk.h"
#include "gateways/row_feed.h"

namespace korvel::desktop {

/// Reads staged rows for a feed, with a context of its own. Until the first row its boxes and its progress are the
/// desk's, which waits for that row. From then on the reading goes on behind whatever else the desk does: it shows
/// nothing, and what it had to say comes out of the feed as its failure.
class ReviewReader {
 public:
  /// Asks, and hands over the rows; false when they are not to be had.
  using Review = std::function<bool(const session::Context&, const RowFeed::Sink&)>;

  /// On the screen's thread: takes the session as it is.
  ReviewReader(Desk& desk, Review review);

  /// Called by the feed, on its thread, once.
  void Read(const RowFeed::Sink& sink);

  /// What the review gave back; once the feed is at its end.
  bool Accepted() const { return accepted_; }
  /// The rows there are; once the feed has brought one.
  std::int64_t Count() const { return count_; }

 private:
  class Boxes;
  class Counter;

  Desk& desk_;
  Review review_;
  session::SessionRecord session_;
  bool behind_ = false;  // the first row has been handed over
  bool accepted_ = false;
  std::int64_t count_ = 0;
  std::optional<std::string> unsaid_;
};

}  // namespace korvel::desktop
