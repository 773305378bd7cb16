#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace korvel::benchmarks {

using Seconds = std::chrono::duration<double>;

/// Wall-clock time of one call.
Seconds TimeOf(const std::function<void()>& work);

/// Times of two pieces of work on the same data, taken in turns so that a noisy machine hits both alike.
struct Comparison {
  std::vector<Seconds> ours;
  std::vector<Seconds> bare;

  /// Median of ours over median of bare.
  double Ratio() const;
};

/// Peak resident memory of a program run to its end, in bytes; command[0] is its path. Throws when it fails.
long PeakMemoryOf(const std::vector<std::string>& command);

Seconds Median(std::vector<Seconds> times);

}  // namespace korvel::benchmarks
