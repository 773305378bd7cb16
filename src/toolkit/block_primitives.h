#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace korvel::toolkit {

/// A block cipher as published: a key schedule, and one block forth and back.
class BlockPrimitive {
 public:
  virtual ~BlockPrimitive() = default;
  BlockPrimitive() = default;
  BlockPrimitive(const BlockPrimitive&) = delete;
  BlockPrimitive& operator=(const BlockPrimitive&) = delete;

  virtual std::string_view Name() const = 0;
  virtual std::size_t BlockBytes() const = 0;
  /// The longest key that the cipher takes, in bytes.
  virtual std::size_t LongestKey() const = 0;
  /// `key` is 1 to LongestKey() bytes.
  virtual void SetKey(std::string_view key) = 0;
  /// Enciphers BlockBytes() bytes over themselves; SetKey came before.
  virtual void Encrypt(std::uint8_t* block) const = 0;
  virtual void Decrypt(std::uint8_t* block) const = 0;
};

/// Blocks of 8 bytes, keys up to 56.
std::unique_ptr<BlockPrimitive> MakeBlowfish();
/// Blocks of 16 bytes, keys up to 32; a key is filled with zero bytes up to 16, 24 or 32.
std::unique_ptr<BlockPrimitive> MakeTwofish();

}  // namespace korvel::toolkit
