#include "toolkit/block_cipher.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "support/fuzz.h"
#include "support/temp_folder.h"
#include "toolkit/whole_file.h"

namespace korvel::toolkit {
namespace {

std::string Bytes(std::string_view hexadecimal) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2)
    bytes += static_cast<char>(std::stoi(std::string(hexadecimal.substr(i, 2)), nullptr, 16));
  return bytes;
}

struct Vector {
  std::unique_ptr<BlockPrimitive> (*make)();
  const char* key;
  const char* plain;
  const char* enciphered;
};

TEST(BlockPrimitives, GiveThePublishedVectors) {
  constexpr const char* kZero16 = "00000000000000000000000000000000";
  const Vector kVectors[] = {
      {MakeBlowfish, "0000000000000000", "0000000000000000", "4EF997456198DD78"},
      {MakeBlowfish, "FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFF", "51866FD5B85ECB8A"},
      {MakeBlowfish, "FEDCBA9876543210", "0123456789ABCDEF", "0ACEAB0FC6A0A28D"},
      {MakeBlowfish, "F0", "FEDCBA9876543210", "F9AD597C49DB005E"},
      {MakeBlowfish, "F0E1D2", "FEDCBA9876543210", "E9C2B70A1BC65CF3"},
      {MakeBlowfish, "F0E1D2C3B4A5968778695A4B3C2D1E0F", "FEDCBA9876543210", "93142887EE3BE15C"},
      {MakeBlowfish, "F0E1D2C3B4A5968778695A4B3C2D1E0F0011223344556677", "FEDCBA9876543210",
       "05044B62FA52D080"},
      {MakeTwofish, kZero16, kZero16, "9F589F5CF6122C32B6BFEC2F2AE8C35A"},
      {MakeTwofish, "00", kZero16, "9F589F5CF6122C32B6BFEC2F2AE8C35A"},
      {MakeTwofish, "0123456789ABCDEFFEDCBA98765432100011223344556677", kZero16,
       "CFD1D2E5A9BE9CDF501F13B892BD2248"},
      {MakeTwofish, "0123456789ABCDEFFEDCBA987654321000112233445566778899AABBCCDDEEFF", kZero16,
       "37527BE0052334B89F0CFCCAE87CFA20"},
  };
  for (const Vector& vector : kVectors) {
    const auto cipher = vector.make();
    cipher->SetKey(Bytes(vector.key));
    std::string block = Bytes(vector.plain);
    ASSERT_EQ(block.size(), cipher->BlockBytes());
    cipher->Encrypt(reinterpret_cast<std::uint8_t*>(block.data()));
    EXPECT_EQ(block, Bytes(vector.enciphered)) << cipher->Name() << " " << vector.key;
    cipher->Decrypt(reinterpret_cast<std::uint8_t*>(block.data()));
    EXPECT_EQ(block, Bytes(vector.plain)) << cipher->Name() << " " << vector.key;
  }
}

std::string Noise(std::mt19937_64& random, std::size_t bytes) {
  std::string noise(bytes, '\0');
  for (char& c : noise) c = static_cast<char>(random());
  return noise;
}

/// Each test below holds for both ciphers.
template <typename Cipher>
class BlockCiphers : public testing::Test {
 protected:
  std::string Enciphered(std::string data, std::string_view key = "chave") {
    cipher.EncryptByte(data, key);
    return data;
  }
  /// Whether the container is refused with the cipher's error and stays as it was.
  bool Refused(const std::string& container, std::string_view key = "chave") {
    std::string data = container;
    try {
      cipher.DecryptByte(data, key);
      return false;
    } catch (const CipherError& error) {
      return std::string(error.what()) == Error() && data == container;
    }
  }
  /// Opens the container into a text of its size, or refuses it and leaves it alone. A function of its own: a caller
  /// that catches in a loop loses stack with each exception in an unoptimized build.
  void OpensOrRefuses(const std::string& container) {
    std::string data = container;
    try {
      cipher.DecryptByte(data);
      ASSERT_GE(container.size(), data.size() + 12);
      ASSERT_LT(container.size(), data.size() + 12 + kBlock);
    } catch (const CipherError&) {
      ASSERT_TRUE(data == container);
    }
  }
  static std::string Error() {
    const char* name = kBlock == 8 ? "Blowfish" : "Twofish";
    return std::string("Incorrect size descriptor in ") + name + " decryption";
  }

  static constexpr std::size_t kBlock = std::is_same_v<Cipher, clsCrypBlowfish> ? 8 : 16;
  Cipher cipher;
};

using Both = testing::Types<clsCrypBlowfish, clsCrypTwofish>;
TYPED_TEST_SUITE(BlockCiphers, Both);

TYPED_TEST(BlockCiphers, GiveBackWhatTheyWereGiven) {
  std::mt19937_64 random(1);
  for (const std::size_t size :
       {0U, 1U, 3U, 4U, 5U, 7U, 8U, 9U, 15U, 16U, 17U, 19U, 20U, 21U, 4095U, 4096U, 4097U, 100'000U}) {
    const std::string data = Noise(random, size);
    std::string changed = this->Enciphered(data);
    EXPECT_EQ(changed.size(), (12 + size + this->kBlock - 1) / this->kBlock * this->kBlock) << size;
    EXPECT_TRUE(size < this->kBlock || changed.find(data) == std::string::npos) << size;
    this->cipher.DecryptByte(changed);
    EXPECT_TRUE(changed == data) << size;
  }
}

TYPED_TEST(BlockCiphers, WriteTheSameTextDifferentlyEachTime) {
  constexpr std::string_view kText = "Facturação de 10 € à D. Ângela";
  const std::string first = this->cipher.EncryptString(kText, "chave");
  const std::string second = this->cipher.EncryptString(kText);
  EXPECT_NE(first, second);
  EXPECT_EQ(this->cipher.DecryptString(first), kText);
  EXPECT_EQ(this->cipher.DecryptString(second), kText);

  std::string digits = this->cipher.EncryptString(kText, {}, true);
  EXPECT_EQ(digits.find_first_not_of("0123456789ABCDEF"), std::string::npos);
  for (char& c : digits) c = static_cast<char>(std::tolower(c));
  EXPECT_EQ(this->cipher.DecryptString(digits, {}, true), kText);
}

TYPED_TEST(BlockCiphers, RefuseWhatIsNoContainerOfTheirs) {
  const std::string container = this->Enciphered("um segredo de trinta e um bytes");
  EXPECT_TRUE(this->Refused(container, "outra"));
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, this->kBlock, this->kBlock + 1,
                                 container.size() - 1, container.size() - this->kBlock}) {
    EXPECT_TRUE(this->Refused(container.substr(0, size))) << size;
  }
  EXPECT_TRUE(this->Refused(container + std::string(this->kBlock, 'x')));
  EXPECT_TRUE(this->Refused(std::string(48, 'x')));
  std::string changed = container;
  changed[8] = static_cast<char>(changed[8] ^ 1);
  EXPECT_TRUE(this->Refused(changed));

  EXPECT_THROW(this->cipher.DecryptString("ABC", "chave", true), CipherError);
  EXPECT_THROW(this->cipher.DecryptString("ABCG", "chave", true), CipherError);
  EXPECT_THROW(this->cipher.DecryptString("Ω", "chave"), CipherError);
  EXPECT_THROW(this->cipher.EncryptString("Ω", "chave"), CipherError);
}

TYPED_TEST(BlockCiphers, KeepTheirKeyUntilAnotherIsTaken) {
  std::string data = "x";
  EXPECT_THROW(this->cipher.EncryptByte(data), CipherError);
  this->cipher.Key("ação");
  const std::string container = this->cipher.EncryptString("texto", {}, true);
  for (const char* refused :
       {"", "   ", "Ω", "uma chave que de tão longa nenhuma das duas cifras aceita, nem cortada"}) {
    EXPECT_THROW(this->cipher.Key(refused), CipherError) << refused;
    EXPECT_EQ(this->cipher.DecryptString(container, {}, true), "texto") << refused;
  }
  EXPECT_EQ(TypeParam().DecryptString(container, "ação", true), "texto");
}

TYPED_TEST(BlockCiphers, TellEachPercentageOnce) {
  std::vector<int> told;
  this->cipher.Progress = [&](int percent) { told.push_back(percent); };
  for (const std::size_t size : {0U, 1000U, 1'000'000U}) {
    for (const bool enciphers : {true, false}) {
      std::string data(size, 'x');
      if (!enciphers) data = this->Enciphered(data);
      told.clear();
      enciphers ? this->cipher.EncryptByte(data, "chave") : this->cipher.DecryptByte(data);
      ASSERT_FALSE(told.empty());
      EXPECT_EQ(told.back(), 100);
      EXPECT_TRUE(std::ranges::is_sorted(told, std::less_equal<>())) << size;
      EXPECT_LE(told.size(), 100u);
    }
  }
}

TYPED_TEST(BlockCiphers, FilesAreReplacedWholeOrNotAtAll) {
  const test::TempFolder folder;
  const auto plain = folder / "dados";
  const auto target = folder / "dados.cif";
  test::WriteFile(plain, std::string(70'000, '\0') + "fim");
  test::WriteFile(target, "de outro");
  EXPECT_FALSE(this->cipher.EncryptFile(plain, target, false, "chave"));
  EXPECT_EQ(test::ReadFile(target), "de outro");
  ASSERT_TRUE(this->cipher.EncryptFile(plain, target, true, "chave"));
  ASSERT_TRUE(this->cipher.DecryptFile(target, folder / "volta", false));
  EXPECT_TRUE(test::ReadFile(folder / "volta") == test::ReadFile(plain));

  EXPECT_THROW(this->cipher.DecryptFile(target, plain, true, "outra"), CipherError);
  EXPECT_EQ(test::ReadFile(plain).size(), 70'003u) << "a refused container leaves the target";
  EXPECT_FALSE(this->cipher.DecryptFile(target, plain, false, "chave"));
  EXPECT_THROW(this->cipher.EncryptFile(folder / "nenhum", folder / "novo", true), FileError);
  EXPECT_THROW(this->cipher.EncryptFile(plain, folder / "nenhuma" / "novo", true), FileError);
  EXPECT_FALSE(std::filesystem::exists(folder / "novo"));
}

TYPED_TEST(BlockCiphers, SurviveHostileContainers) {
  test::Fuzz fuzz(20100417, 2);  // both ciphers
  while (fuzz.Goes()) {
    const std::string good = this->Enciphered(fuzz.Bytes(fuzz.Below(100)));
    const std::string hostile = fuzz.Chance(4) ? fuzz.Bytes(fuzz.Below(200)) : fuzz.Mutated(good, good);
    ASSERT_NO_FATAL_FAILURE(this->OpensOrRefuses(hostile)) << fuzz.Rounds();
  }
}

TEST(Blowfish, TakesOnlyLengthsThatFitTheContainer) {
  clsCrypBlowfish cipher;
  std::string good = "12345";
  cipher.EncryptByte(good, "chave");
  ASSERT_EQ(good.size(), 24u);
  for (const std::int64_t length : {0LL, 1LL, 4LL, 5LL, 12LL, 13LL, 24LL, 25LL, 255LL, -1LL, -5LL,
                                    (long long)INT_MAX, (long long)INT_MIN}) {
    // The first cipher block goes into the second one's text: changing it writes any length there.
    std::string forged = good;
    const auto change = static_cast<std::uint32_t>(length) ^ 5u;
    for (unsigned i = 0; i < 4; ++i) forged[i] ^= static_cast<char>(change >> (8 * i));
    if (length >= 5 && length <= 12) {
      cipher.DecryptByte(forged);
      EXPECT_EQ(forged.size(), static_cast<std::size_t>(length));
    } else {
      EXPECT_THROW(cipher.DecryptByte(forged), CipherError) << length;
    }
  }
}

TEST(FixedKey, HidesTextsThatComeBack) {
  EXPECT_NE(Encrypt_Novo("segredo"), Encrypt_Novo("segredo"));
  EXPECT_EQ(Decrypt_Novo(Encrypt_Novo("segredo ção")), "segredo ção");
  EXPECT_EQ(Decrypt_Novo(Encrypt_Novo("")), "");
  EXPECT_EQ(Decrypt_Novo(""), "");
  EXPECT_EQ(Decrypt_Novo("   "), "");
  EXPECT_THROW(Decrypt_Novo("nada disto"), CipherError);
}

}  // namespace
}  // namespace korvel::toolkit
