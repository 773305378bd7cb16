#pragma once

#include <chrono>
#include <cstdlib>
#include <random>
#include <span>
#include <string>
#include <string_view>

namespace korvel::test {

/// Makes input that nobody would write, the same one in every run. `seed` names the run: a fault found in it is found
/// again. How long it goes on is the environment's: KORVEL_FUZZ_SECONDS, 2 when it is not set, for all tests together
/// that try the same thing.
class Fuzz {
 public:
  explicit Fuzz(std::uint32_t seed, int sharers = 1)
      : random_(seed), end_(Clock::now() + Budget() / sharers) {}

  /// Counts a round; false once the time is over. The first round always takes place.
  bool Goes() { return rounds_++ == 0 || Clock::now() < end_; }
  /// Rounds so far, for a failed one's trace.
  int Rounds() const { return rounds_; }

  std::size_t Below(std::size_t bound) { return bound == 0 ? 0 : random_() % bound; }
  bool Chance(std::size_t oneIn) { return Below(oneIn) == 0; }
  template <typename Range>
  const auto& OneOf(const Range& range) {
    return *(std::begin(range) + static_cast<std::ptrdiff_t>(Below(std::size(range))));
  }

  std::string Bytes(std::size_t count) {
    std::string bytes(count, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random_());
    return bytes;
  }

  /// `bytes` with one to four faults: bits turned, bytes at their limits, pieces gone, doubled, put in from `other`,
  /// or the end cut off.
  std::string Mutated(std::string bytes, std::string_view other = {}) {
    for (std::size_t faults = 1 + Below(4); faults > 0; --faults) Spoil(bytes, other);
    return bytes;
  }

 private:
  using Clock = std::chrono::steady_clock;

  static std::chrono::milliseconds Budget() {
    const char* seconds = std::getenv("KORVEL_FUZZ_SECONDS");
    constexpr int kDefault = 2;
    return std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : kDefault);
  }

  /// A short piece of a text, from anywhere in it.
  std::string_view Piece(std::string_view text) {
    constexpr std::size_t kLongest = 40;
    const std::size_t at = Below(text.size() + 1);
    return text.substr(at, 1 + Below(kLongest));
  }

  void Spoil(std::string& bytes, std::string_view other) {
    constexpr char kLimits[] = {'\0', '\1', '\x7F', '\x80', '\xFF', '\xFE', '\'', '('};
    const std::size_t at = Below(bytes.size() + 1);
    switch (Below(7)) {
      case 0:
        if (at < bytes.size()) bytes[at] = static_cast<char>(bytes[at] ^ (1 << Below(8)));
        break;
      case 1:
        if (at < bytes.size()) bytes[at] = OneOf(kLimits);
        break;
      case 2:
        bytes.erase(at, 1 + Below(16));
        break;
      case 3:
        bytes.insert(at, std::string(Piece(bytes)));
        break;
      case 4:
        bytes.insert(at, std::string(Piece(other)));
        break;
      case 5:
        bytes.insert(at, Bytes(1 + Below(8)));
        break;
      default:
        if (Chance(4)) bytes.resize(at);
    }
  }

  std::mt19937 random_;
  Clock::time_point end_;
  int rounds_ = 0;
};

}  // namespace korvel::test
