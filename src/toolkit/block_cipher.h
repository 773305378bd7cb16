#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "toolkit/block_primitives.h"

/// Block ciphers over bytes, texts and files. They share one container: two random words, the length of the data, the
/// data, a filler up to whole blocks; enciphered in chained blocks, the random words doing for an initial vector. The
/// length is the only check of integrity: a wrong key or a changed container is found almost always, not always.
namespace korvel::toolkit {

/// A container that does not decipher, data that it cannot hold, or a key that its cipher does not take.
class CipherError : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// Not for several threads. Texts are UTF-8 outside and windows-1252 inside; keys are such texts too. All members throw
/// CipherError; a key that is not taken leaves the present one.
class BlockCipher {
 public:
  using OptionalKey = std::optional<std::string_view>;

  virtual ~BlockCipher() = default;

  /// The key for all that follows, not blank. The present key again does nothing.
  void Key(std::string_view chave);

  /// Bytes, changed in place and resized; at most 2^31-1 of them. A refused container stays as it was.
  void EncryptByte(std::string& dados, OptionalKey chave = {});
  void DecryptByte(std::string& dados, OptionalKey chave = {});

  /// The container of a text as a text of the same number of characters as it has bytes (control characters among
  /// them), or as two hexadecimal digits a byte. Reading takes digits of either case.
  std::string EncryptString(std::string_view texto, OptionalKey chave = {}, bool emHexa = false);
  std::string DecryptString(std::string_view texto, OptionalKey chave = {}, bool emHexa = false);

  /// A whole file, through memory. False, with nothing done, when the target is there and `substituir` is not set. The
  /// target is replaced at the end, at once. Throws FileError too, for a missing source among others.
  bool EncryptFile(const std::filesystem::path& origem, const std::filesystem::path& destino, bool substituir,
                   OptionalKey chave = {});
  bool DecryptFile(const std::filesystem::path& origem, const std::filesystem::path& destino, bool substituir,
                   OptionalKey chave = {});

  /// Told each new percentage of a run, 100 at its end. May be empty. What it throws ends the run, and the bytes are
  /// lost.
  std::function<void(std::int32_t percent)> Progress;

 protected:
  explicit BlockCipher(std::unique_ptr<BlockPrimitive> primitive);

 private:
  void RequireKey(OptionalKey chave);

  std::unique_ptr<BlockPrimitive> primitive_;
  std::string key_;  // as bytes; empty before the first
};

class clsCrypBlowfish final : public BlockCipher {
 public:
  clsCrypBlowfish() : BlockCipher(MakeBlowfish()) {}
};

class clsCrypTwofish final : public BlockCipher {
 public:
  clsCrypTwofish() : BlockCipher(MakeTwofish()) {}
};

/// Blowfish under a key fixed in the program: it hides a text from readers without the program, no more.
std::string Encrypt_Novo(std::string_view texto);
/// "" for a blank text. Throws CipherError.
std::string Decrypt_Novo(std::string_view texto);

}  // namespace korvel::toolkit
