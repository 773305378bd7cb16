#include "data/embedded/password.h"

#include <array>
#include <cstdint>
#include <random>

#include <fmt/format.h>
#include <nettle/pbkdf2.h>

namespace korvel::data::embedded {
namespace {

/// Connections are opened for every operation, so each trial may take about a millisecond.
constexpr unsigned kIterations = 2000;
constexpr std::size_t kSaltBytes = 16;
constexpr std::size_t kHashBytes = 32;

const std::uint8_t* Bytes(std::string_view text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

std::string Hash(std::string_view password, std::string_view salt) {
  std::array<std::uint8_t, kHashBytes> hash{};
  nettle_pbkdf2_hmac_sha256(password.size(), Bytes(password), kIterations, salt.size(), Bytes(salt),
                            hash.size(), hash.data());
  std::string text;
  for (const std::uint8_t byte : hash) text += fmt::format("{:02x}", byte);
  return text;
}

}  // namespace

std::string HashPassword(std::string_view password) {
  std::random_device random;
  std::string salt;
  for (std::size_t i = 0; i < kSaltBytes; ++i) salt += fmt::format("{:02x}", random() & 0xFF);
  return salt + ":" + Hash(password, salt);
}

bool MatchesPassword(std::string_view password, std::string_view kept) {
  const std::size_t colon = kept.find(':');
  if (colon == std::string_view::npos) return false;
  const std::string hash = Hash(password, kept.substr(0, colon));
  const std::string_view wanted = kept.substr(colon + 1);
  unsigned difference = hash.size() == wanted.size() ? 0 : 1;
  for (std::size_t i = 0; i < hash.size() && i < wanted.size(); ++i) {
    difference |= static_cast<unsigned char>(hash[i]) ^ static_cast<unsigned char>(wanted[i]);
  }
  return difference == 0;
}

}  // namespace korvel::data::embedded
