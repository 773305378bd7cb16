#include "toolkit/block_cipher.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <iterator>
#include <limits>
#include <random>
#include <utility>

#include "toolkit/code_page.h"
#include "toolkit/text.h"
#include "toolkit/whole_file.h"

namespace korvel::toolkit {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLengthOffset = 8;
constexpr std::size_t kHeaderBytes = 12;
constexpr std::size_t kWordBytes = 4;
constexpr std::size_t kLargestBlock = 16;
constexpr std::string_view kFixedKey = "vendacostal390417";

/// Words lie in the container with their lowest byte first.
void PutWord(std::string& bytes, std::size_t at, std::uint32_t word) {
  for (std::size_t i = 0; i < kWordBytes; ++i) bytes[at + i] = static_cast<char>((word >> (8 * i)) & 0xFF);
}

std::uint32_t WordAt(std::string_view bytes, std::size_t at) {
  std::uint32_t word = 0;
  for (std::size_t i = kWordBytes; i-- > 0;) word = (word << 8) | static_cast<std::uint8_t>(bytes[at + i]);
  return word;
}

std::string CodePageBytes(std::string_view text) {
  CodePageText converted = ToCodePage(text);
  if (converted.missing > 0) throw CipherError("Texto com caracteres fora da página de códigos windows-1252");
  return std::move(converted.bytes);
}

std::string Hexadecimal(std::string_view bytes) {
  std::string digits;
  digits.reserve(2 * bytes.size());
  for (const char c : bytes)
    fmt::format_to(std::back_inserter(digits), "{:02X}", static_cast<std::uint8_t>(c));
  return digits;
}

std::string BytesOf(std::string_view hexadecimal) {
  constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";
  if (hexadecimal.size() % 2 != 0 || hexadecimal.find_first_not_of(kDigits) != hexadecimal.npos)
    throw CipherError("Texto hexadecimal inválido");
  std::string bytes(hexadecimal.size() / 2, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char* digits = hexadecimal.data() + 2 * i;
    std::uint8_t value = 0;
    std::from_chars(digits, digits + 2, value, 16);
    bytes[i] = static_cast<char>(value);
  }
  return bytes;
}

/// The container of `data` before it is enciphered.
std::string Packed(std::string_view data, std::size_t blockBytes) {
  const std::size_t blocks = (kHeaderBytes + data.size() + blockBytes - 1) / blockBytes;
  std::string container;
  container.reserve(blocks * blockBytes);
  container.resize(kHeaderBytes);
  std::random_device random;
  for (std::size_t at = 0; at < kLengthOffset; at += kWordBytes) PutWord(container, at, random());
  PutWord(container, kLengthOffset, static_cast<std::uint32_t>(data.size()));
  container += data;
  container.resize(blocks * blockBytes);
  return container;
}

using Tell = std::function<void(std::int32_t)>;

/// Calls `work(block, offset)` for each block and tells each percentage once.
template <typename Work>
void ForEachBlock(std::string& bytes, std::size_t blockBytes, const Tell& tell, Work&& work) {
  auto* start = reinterpret_cast<std::uint8_t*>(bytes.data());
  std::int32_t told = 0;
  for (std::size_t at = 0; at < bytes.size(); at += blockBytes) {
    work(start + at, at);
    const auto percent = static_cast<std::int32_t>((at + blockBytes) * 100 / bytes.size());
    if (tell && percent != told) tell(percent);
    told = percent;
  }
}

void XorInto(std::uint8_t* block, const std::uint8_t* other, std::size_t bytes) {
  std::transform(block, block + bytes, other, block, std::bit_xor<>());
}

void Encipher(const BlockPrimitive& cipher, std::string& bytes, const Tell& tell) {
  const std::size_t size = cipher.BlockBytes();
  ForEachBlock(bytes, size, tell, [&](std::uint8_t* block, std::size_t at) {
    if (at > 0) XorInto(block, block - size, size);
    cipher.Encrypt(block);
  });
}

void Decipher(const BlockPrimitive& cipher, std::string& bytes, const Tell& tell) {
  const std::size_t size = cipher.BlockBytes();
  std::array<std::uint8_t, kLargestBlock> previous{};
  std::array<std::uint8_t, kLargestBlock> current{};
  ForEachBlock(bytes, size, tell, [&](std::uint8_t* block, std::size_t at) {
    std::copy_n(block, size, current.begin());
    cipher.Decrypt(block);
    if (at > 0) XorInto(block, previous.data(), size);
    previous = current;
  });
}

/// The length that a container of whole blocks holds, read from its front alone.
std::int64_t LengthInside(const BlockPrimitive& cipher, const std::string& container) {
  std::string front = container.substr(0, kLargestBlock);
  Decipher(cipher, front, {});
  return static_cast<std::int32_t>(WordAt(front, kLengthOffset));
}

/// The length of the data in a container. Throws CipherError for one that the container's size does not fit.
std::size_t CheckedLength(const BlockPrimitive& cipher, const std::string& container) {
  const std::size_t block = cipher.BlockBytes();
  const bool whole = container.size() >= kLargestBlock && container.size() % block == 0;
  const std::int64_t length = whole ? LengthInside(cipher, container) : -1;
  const std::int64_t around = static_cast<std::int64_t>(container.size()) - length;
  constexpr auto kLeast = static_cast<std::int64_t>(kHeaderBytes);
  if (length >= 0 && around >= kLeast && around < kLeast + static_cast<std::int64_t>(block))
    return static_cast<std::size_t>(length);
  throw CipherError(fmt::format("Incorrect size descriptor in {} decryption", cipher.Name()));
}

bool MayWrite(const fs::path& destino, bool substituir) {
  return substituir || !fs::exists(fs::symlink_status(destino));
}

}  // namespace

BlockCipher::BlockCipher(std::unique_ptr<BlockPrimitive> primitive) : primitive_(std::move(primitive)) {}

void BlockCipher::Key(std::string_view chave) {
  std::string bytes = CodePageBytes(chave);
  if (IsBlank(chave)) throw CipherError("A chave da cifra está vazia");
  if (bytes == key_) return;
  if (bytes.size() > primitive_->LongestKey()) {
    throw CipherError(fmt::format("A chave da cifra {} não pode ter mais de {} caracteres",
                                  primitive_->Name(), primitive_->LongestKey()));
  }
  primitive_->SetKey(bytes);
  key_ = std::move(bytes);
}

void BlockCipher::RequireKey(OptionalKey chave) {
  if (chave) Key(*chave);
  if (key_.empty()) throw CipherError("A chave da cifra está vazia");
}

void BlockCipher::EncryptByte(std::string& dados, OptionalKey chave) {
  RequireKey(chave);
  if (dados.size() > std::numeric_limits<std::int32_t>::max())
    throw CipherError("Os dados excedem o tamanho que a cifra permite");
  dados = Packed(dados, primitive_->BlockBytes());
  Encipher(*primitive_, dados, Progress);
}

void BlockCipher::DecryptByte(std::string& dados, OptionalKey chave) {
  RequireKey(chave);
  const std::size_t length = CheckedLength(*primitive_, dados);
  Decipher(*primitive_, dados, Progress);
  dados.erase(0, kHeaderBytes);
  dados.resize(length);
}

std::string BlockCipher::EncryptString(std::string_view texto, OptionalKey chave, bool emHexa) {
  std::string bytes = CodePageBytes(texto);
  EncryptByte(bytes, chave);
  return emHexa ? Hexadecimal(bytes) : FromCodePage(bytes);
}

std::string BlockCipher::DecryptString(std::string_view texto, OptionalKey chave, bool emHexa) {
  std::string bytes = emHexa ? BytesOf(texto) : CodePageBytes(texto);
  DecryptByte(bytes, chave);
  return FromCodePage(bytes);
}

bool BlockCipher::EncryptFile(const fs::path& origem, const fs::path& destino, bool substituir,
                              OptionalKey chave) {
  std::string bytes = ReadWholeFile(origem);
  if (!MayWrite(destino, substituir)) return false;
  EncryptByte(bytes, chave);
  ReplaceWholeFile(destino, bytes);
  return true;
}

bool BlockCipher::DecryptFile(const fs::path& origem, const fs::path& destino, bool substituir,
                              OptionalKey chave) {
  std::string bytes = ReadWholeFile(origem);
  if (!MayWrite(destino, substituir)) return false;
  DecryptByte(bytes, chave);
  ReplaceWholeFile(destino, bytes);
  return true;
}

std::string Encrypt_Novo(std::string_view texto) {
  return clsCrypBlowfish().EncryptString(texto, kFixedKey);
}

std::string Decrypt_Novo(std::string_view texto) {
  if (IsBlank(texto)) return {};
  return clsCrypBlowfish().DecryptString(texto, kFixedKey);
}

}  // namespace korvel::toolkit
