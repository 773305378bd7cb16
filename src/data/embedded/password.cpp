#include "data/embedded/password.h"

#include <sodium.h>

#include <array>
#include <cstdint>
#include <mutex>
#include <new>
#include <set>
#include <stdexcept>

namespace korvel::data::embedded {
namespace {

/// 7 MiB, five passes: about two hundredths of a second on a desktop, and dear to whoever tries many.
constexpr unsigned long long kPasses = 5;
constexpr std::size_t kMemoryBytes = 7U * 1024 * 1024;
constexpr std::size_t kMostKnown = 256;

void StartLibrary() {
  static const bool ready = sodium_init() >= 0;
  if (!ready) throw std::runtime_error("A biblioteca de cifras não arrancou");
}

/// Logins that proved their password, by a hash under a key that lives only as long as the process.
class KnownLogins {
 public:
  using Mark = std::array<unsigned char, crypto_generichash_BYTES>;

  KnownLogins() {
    StartLibrary();
    crypto_generichash_keygen(key_.data());
  }

  Mark MarkOf(std::string_view login, std::string_view password, std::string_view kept) const {
    crypto_generichash_state state;
    crypto_generichash_init(&state, key_.data(), key_.size(), crypto_generichash_BYTES);
    for (const std::string_view part : {login, password, kept}) Take(state, part);
    Mark mark{};
    crypto_generichash_final(&state, mark.data(), mark.size());
    return mark;
  }

  bool Holds(const Mark& mark) {
    const std::scoped_lock lock(mutex_);
    return marks_.contains(mark);
  }

  void Add(const Mark& mark) {
    const std::scoped_lock lock(mutex_);
    if (marks_.size() >= kMostKnown) marks_.clear();
    marks_.insert(mark);
  }

 private:
  /// With its length in front, so that parts cannot run into each other.
  static void Take(crypto_generichash_state& state, std::string_view part) {
    const std::uint64_t length = part.size();
    crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(&length), sizeof length);
    crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(part.data()), part.size());
  }

  std::array<unsigned char, crypto_generichash_KEYBYTES> key_{};
  std::mutex mutex_;
  std::set<Mark> marks_;
};

KnownLogins& Known() {
  static KnownLogins known;
  return known;
}

std::string Hash(std::string_view password) {
  StartLibrary();
  std::array<char, crypto_pwhash_STRBYTES> text{};
  if (crypto_pwhash_str(text.data(), password.data(), password.size(), kPasses, kMemoryBytes) != 0) {
    throw std::bad_alloc();
  }
  return text.data();
}

}  // namespace

std::string HashPassword(std::string_view login, std::string_view password) {
  std::string kept = Hash(password);
  Known().Add(Known().MarkOf(login, password, kept));
  return kept;
}

bool MatchesPassword(std::string_view login, std::string_view password, std::string_view kept) {
  if (kept.empty()) {
    Hash(password);
    return false;
  }
  const auto mark = Known().MarkOf(login, password, kept);
  if (Known().Holds(mark)) return true;
  const bool matches =
      crypto_pwhash_str_verify(std::string(kept).c_str(), password.data(), password.size()) == 0;
  if (matches) Known().Add(mark);
  return matches;
}

}  // namespace korvel::data::embedded
