#include "toolkit/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvel::toolkit {
namespace {

using testing::ElementsAre;

TEST(OptionList, SplitsEntriesAtTheFirstColon) {
  EXPECT_THAT(eselToArray("0:Não;1:Sim;"), ElementsAre(Option{"0", "Não"}, Option{"1", "Sim"}));
  EXPECT_THAT(eselToArray(":Sem Efeito;A:a:b;C;"),
              ElementsAre(Option{"", "Sem Efeito"}, Option{"A", "a:b"}, Option{"C", ""}));
  EXPECT_THAT(eselToArray("A:a;B:b"), ElementsAre(Option{"A", "a"}));
  EXPECT_TRUE(eselToArray("").empty());
}

TEST(OptionList, FindsKeysInAnyCase) {
  constexpr std::string_view kList = "I:Integrados;F:Facturação;f:outra;:Sem Efeito;";
  EXPECT_EQ(eselChave(kList, "f"), 1u);
  EXPECT_EQ(eselChave(kList, ""), 3u);
  EXPECT_EQ(eselChave(kList, "X"), std::nullopt);
}

TEST(Codes, StandForTheirCaptions) {
  EXPECT_EQ(chk_GetValue_str(chk_PutValue_int("S")), "S");
  EXPECT_EQ(chk_GetValue_str(chk_PutValue_int("x")), "N");
  EXPECT_EQ(Tempos_str("MES"), "Mes(es)");
  EXPECT_EQ(Tempos_str("XXX"), "");
  EXPECT_EQ(eselToArray(Tempos_str(" ")).size(), 4u);
}

TEST(FileSizes, AreShort) {
  const std::pair<std::uint64_t, const char*> kRows[] = {{0, "0 Bytes"},
                                                         {1023, "1023 Bytes"},
                                                         {1024, "1 KB"},
                                                         {1536, "1,5 KB"},
                                                         {5 * 1024 * 1024 + 256 * 1024, "5,25 MB"},
                                                         {std::uint64_t{3} << 30, "3 GB"},
                                                         {std::uint64_t{5000} << 40, "5000 TB"}};
  for (const auto& [bytes, text] : kRows) EXPECT_EQ(Ficheiros_Tamanho_str(bytes, {}), text);
}

}  // namespace
}  // namespace korvel::toolkit
