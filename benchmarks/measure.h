#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
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

/// Runs both three times. `prepare` comes before each of ours and is not counted.
Comparison Compare(const std::function<void()>& ours, const std::function<void()>& bare,
                   const std::function<void()>& prepare = {});

/// One line: both times, their ratio, and whether it keeps the mark.
void Print(std::string_view what, double mark, const Comparison& times);
/// One line: peak memory of the full size and of a tenth of it, in bytes.
void PrintMemory(long full, long tenth);

/// Peak resident memory of a program run to its end, in bytes; command[0] is its path. Throws when it fails.
long PeakMemoryOf(const std::vector<std::string>& command);

Seconds Median(std::vector<Seconds> times);

}  // namespace korvel::benchmarks
