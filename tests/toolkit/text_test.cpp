#include "toolkit/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvel::toolkit {
namespace {

using testing::ElementsAre;

TEST(Text, TrimsBlanksOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim("\ta\n "), "\ta\n");
  EXPECT_EQ(TrimLeft("  a "), "a ");
  EXPECT_EQ(TrimRight(" a  "), " a");
  EXPECT_TRUE(IsBlank("  "));
  EXPECT_FALSE(IsBlank("\n"));
}

TEST(Text, CutsBetweenCharacters) {
  EXPECT_EQ(CutTo("acção", 3), "acç");
  EXPECT_EQ(CutTo("acção", 5), "acção");
  EXPECT_EQ(CutTo("acção", 9), "acção");
  EXPECT_EQ(CutTo("€1", 1), "€");
  EXPECT_EQ(CutTo("\xC3", 1), "\xC3");
  EXPECT_EQ(CutTo("", 0), "");
}

TEST(Text, ChangesTheCaseOfPortugueseLetters) {
  EXPECT_EQ(Upper("ligação nº 1 ÷ ßÿžš"), "LIGAÇÃO Nº 1 ÷ ßŸŽŠ");
  EXPECT_EQ(Lower("LIGAÇÃO × ŸŽŒ"), "ligação × ÿžœ");
  EXPECT_TRUE(SameIgnoringCase("Conecção", "CONECÇÃO"));
  EXPECT_FALSE(SameIgnoringCase("a", "á"));
  EXPECT_FALSE(SameIgnoringCase("a", "a "));
  EXPECT_EQ(Upper("a\xFF"
                  "b"),
            "A\xFF"
            "B");  // an ill-formed byte stays
}

TEST(StripString, TrimsEachPiece) {
  EXPECT_THAT(StripString("a ;; b", ";;"), ElementsAre("a", "b"));
  EXPECT_THAT(StripString("a;;b;", ";"), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(StripString(" a;b ", ""), ElementsAre("a;b"));
  EXPECT_THAT(StripString("", ";"), ElementsAre(""));
}

TEST(FastStripString, DropsEmptyPiecesBeforeTheNext) {
  EXPECT_THAT(FastStripString("2/3", "/"), ElementsAre("2", "3"));
  EXPECT_THAT(FastStripString("2///3", "/"), ElementsAre("2", "3"));
  EXPECT_THAT(FastStripString("/3", "/"), ElementsAre("3"));
  EXPECT_THAT(FastStripString("2/", "/"), ElementsAre("2", ""));
  EXPECT_THAT(FastStripString("2//", "/"), ElementsAre("2", ""));
  EXPECT_THAT(FastStripString("//", "/"), ElementsAre(""));
  EXPECT_THAT(FastStripString("  ", "/"), ElementsAre(""));
}

TEST(Text, Cleaners) {
  EXPECT_EQ(StripVBCRLFString(" a\r\nb ", "-x"), "a--b");
  EXPECT_EQ(StripVBCRLFString(" a\r\nb ", ""), "a\r\nb");
  EXPECT_EQ(StripVBCRLFString("a\n", " "), "a");
  EXPECT_EQ(ReplacePortChar("Acção à Ünião €5 nº ª ñ"), "Accao a Uniao E5 no a ñ");
  EXPECT_EQ(Tirar_Espacos_str(" a b ", " "), "ab");
  EXPECT_EQ(Tirar_Espacos_str("aAbB", "a"), "AbB");
  EXPECT_EQ(Tirar_Letras_e_Substituir_str("1+2+3", "+", "Y"), "1Y2Y3");
  EXPECT_EQ(Tirar_Letras_e_Substituir_str("çãç", "ç", ""), "ã");
  EXPECT_EQ(TiraPontos(" 1.234.5 "), "12345");
}

TEST(LimpaContribuinte, TrimsItsArgumentToo) {
  std::string number = " 501 234 567 ";
  EXPECT_EQ(LimpaContribuinte_str(number), "501234567");
  EXPECT_EQ(number, "501 234 567");
  EXPECT_EQ(LimpaContribuinte_str(std::string_view(" 5 0 ")), "50");
}

TEST(Text, Classes) {
  EXPECT_TRUE(SoDigitos("0123456789"));
  EXPECT_TRUE(SoDigitos(""));
  EXPECT_FALSE(SoDigitos("12,3"));
  EXPECT_TRUE(SoAlfanumerico("Acão-1+2"));
  EXPECT_TRUE(SoAlfanumerico("é"));
  for (const char* text : {"ç", "ü", "a b", "a.b", "Ñ"}) EXPECT_FALSE(SoAlfanumerico(text)) << text;
  EXPECT_TRUE(TemDigito("abc1"));
  EXPECT_FALSE(TemDigito("abc"));
  EXPECT_EQ(TiraAcentos("ÁÀÃÂÉÊÍÎÓÕÚÛáõçü"), "AAAAEEIIOOUUaoçü");
}

TEST(Text, KeysAndWords) {
  std::string key = " 21a ç ";
  ChaveMaiuscula(key);
  EXPECT_EQ(key, "21A Ç");
  EXPECT_EQ(GetArg("  um  dois ", 2), "dois");
  EXPECT_EQ(GetArg("um dois", 3), "");
  EXPECT_EQ(GetArg("um", 0), "");
  EXPECT_EQ(ContaCHR("Banana á", "A"), 3u);
  EXPECT_EQ(ContaCHR("Éé e", "é"), 2u);
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("aaa", "", "b"), "aaa");
}

}  // namespace
}  // namespace korvel::toolkit
