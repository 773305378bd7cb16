#include "demo/signature.h"

#include <cstdint>

#include "demo/random.h"

namespace korvel::demo {

namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kLength = 172;  // of 128 bytes in digits of six bits, the last one filled up
constexpr int kDigitsADraw = 10;

/// FNV-1a.
std::uint64_t SeedOf(std::string_view text) {
  std::uint64_t seed = 0xCBF29CE484222325U;
  for (const char letter : text) seed = (seed ^ static_cast<unsigned char>(letter)) * 0x100000001B3U;
  return seed;
}

}  // namespace

std::string SignatureOf(std::string_view document) {
  Random random(SeedOf(document));
  std::string text;
  text.reserve(kLength + kDigitsADraw);
  while (text.size() < kLength) {
    std::uint64_t bits = random.Next();
    for (int i = 0; i < kDigitsADraw; ++i, bits >>= 6U) text += kDigits[bits & 63U];
  }
  text.resize(kLength - 1);
  return text + '=';
}

}  // namespace korvel::demo
