#pragma once

#include <cstdint>

namespace korvel::tds::type {

/// Types by the number that the protocol gives them.
inline constexpr std::uint8_t kNull = 0x1F, kInt1 = 0x30, kBit = 0x32, kInt2 = 0x34, kInt4 = 0x38,
                              kSmallDateTime = 0x3A, kReal = 0x3B, kMoney = 0x3C, kDateTime = 0x3D,
                              kFloat = 0x3E, kSmallMoney = 0x7A, kInt8 = 0x7F;
inline constexpr std::uint8_t kIntN = 0x26, kBitN = 0x68, kDecimalN = 0x6A, kNumericN = 0x6C, kFloatN = 0x6D,
                              kMoneyN = 0x6E, kDateTimeN = 0x6F;
inline constexpr std::uint8_t kDateN = 0x28, kTimeN = 0x29, kDateTime2N = 0x2A;
inline constexpr std::uint8_t kText = 0x23, kNText = 0x63;
inline constexpr std::uint8_t kVarchar = 0xA7, kChar = 0xAF, kNVarchar = 0xE7, kNChar = 0xEF;

}  // namespace korvel::tds::type
