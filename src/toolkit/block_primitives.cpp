#include "toolkit/block_primitives.h"

#include <nettle/blowfish.h>
#include <nettle/twofish.h>

#include <string>

namespace korvel::toolkit {
namespace {

const std::uint8_t* Bytes(const std::string& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

class Blowfish final : public BlockPrimitive {
 public:
  std::string_view Name() const override { return "Blowfish"; }
  std::size_t BlockBytes() const override { return BLOWFISH_BLOCK_SIZE; }
  std::size_t LongestKey() const override { return BLOWFISH_MAX_KEY_SIZE; }

  void SetKey(std::string_view key) override {
    // The schedule cycles the key, so a short one repeated is the same key; the library wants eight bytes.
    std::string cycled(key);
    while (cycled.size() < BLOWFISH_MIN_KEY_SIZE) cycled += key;
    blowfish_set_key(&schedule_, cycled.size(), Bytes(cycled));
  }
  void Encrypt(std::uint8_t* block) const override {
    blowfish_encrypt(&schedule_, BLOWFISH_BLOCK_SIZE, block, block);
  }
  void Decrypt(std::uint8_t* block) const override {
    blowfish_decrypt(&schedule_, BLOWFISH_BLOCK_SIZE, block, block);
  }

 private:
  blowfish_ctx schedule_{};
};

class Twofish final : public BlockPrimitive {
 public:
  std::string_view Name() const override { return "Twofish"; }
  std::size_t BlockBytes() const override { return TWOFISH_BLOCK_SIZE; }
  std::size_t LongestKey() const override { return TWOFISH_MAX_KEY_SIZE; }

  void SetKey(std::string_view key) override {
    constexpr std::size_t kStep = 8;
    const std::size_t whole = (key.size() + kStep - 1) / kStep * kStep;
    std::string filled(key);
    filled.resize(whole < TWOFISH_MIN_KEY_SIZE ? TWOFISH_MIN_KEY_SIZE : whole);
    twofish_set_key(&schedule_, filled.size(), Bytes(filled));
  }
  void Encrypt(std::uint8_t* block) const override {
    twofish_encrypt(&schedule_, TWOFISH_BLOCK_SIZE, block, block);
  }
  void Decrypt(std::uint8_t* block) const override {
    twofish_decrypt(&schedule_, TWOFISH_BLOCK_SIZE, block, block);
  }

 private:
  twofish_ctx schedule_{};
};

}  // namespace

std::unique_ptr<BlockPrimitive> MakeBlowfish() {
  return std::make_unique<Blowfish>();
}

std::unique_ptr<BlockPrimitive> MakeTwofish() {
  return std::make_unique<Twofish>();
}

}  // namespace korvel::toolkit
