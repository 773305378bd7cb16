#pragma once

#include <cstdint>
#include <span>

namespace korvel::demo {

/// A small generator of pseudo-random numbers, the same on every machine for the same seed: the demonstration
/// data come out alike wherever they are made, which the standard library's distributions do not promise.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  /// The next 64 bits (SplitMix64).
  std::uint64_t Next() {
    std::uint64_t mixed = (state_ += 0x9E3779B97F4A7C15U);
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
  }
  /// From 0 to `count` - 1; `count` is above 0.
  std::int64_t Below(std::int64_t count) {
    return static_cast<std::int64_t>(Next() % static_cast<std::uint64_t>(count));
  }
  /// Both ends belong to it.
  std::int64_t Between(std::int64_t low, std::int64_t high) { return low + Below(high - low + 1); }
  /// True that many times in a hundred.
  bool Chance(int percent) { return Below(100) < percent; }

  template <typename T, std::size_t N>
  const T& Pick(const T (&choices)[N]) {
    return choices[Below(static_cast<std::int64_t>(N))];
  }

 private:
  std::uint64_t state_;
};

}  // namespace korvel::demo
