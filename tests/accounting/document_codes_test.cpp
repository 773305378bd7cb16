#include "accounting/document_codes.h"

#include <gtest/gtest.h>

namespace korvel::accounting {
namespace {

TEST(DocumentCodes, LettersDigitsAndTwoSignsAreValid) {
  for (const char* code : {"", "0", "V1", "12-3+A", "azAZ09", "ÁÀÃÂáàãâÉÈÊéèêÍÌÎíìî", "ÓÒÕÔóõôÚÙÛúùû"}) {
    EXPECT_TRUE(IsValidCode(code)) << code;
  }
  for (const char* code : {"ò",     "ç", "Ç",  "ä",  "Ñ", "ã ", " A", "A/1", "A.1", "A_1",    "D'Avila",
                           "FA\t1", "€", "１", "A@", "[", "`",  "{",  "/",   ":",   "ab\xC3", "\xE7"}) {
    EXPECT_FALSE(IsValidCode(code)) << code;
  }
}

TEST(DocumentCodes, SignsOfANumberBecomeLetters) {
  EXPECT_EQ(CleanNumber("12-3+A"), "12K3YA");
  EXPECT_EQ(CleanNumber("+-+-"), "YKYK");
  EXPECT_EQ(CleanNumber("Ã-1"), "ÃK1");
  EXPECT_EQ(CleanNumber(""), "");
}

TEST(DocumentCodes, TheLastThreeCharactersMoveToTheFront) {
  EXPECT_EQ(SourceDocumentOf("1234FAC"), "FAC1234");
  EXPECT_EQ(SourceDocumentOf("FAC"), "FAC");
  EXPECT_EQ(SourceDocumentOf("FA"), "");
  EXPECT_EQ(SourceDocumentOf(""), "");
  EXPECT_EQ(SourceDocumentOf("Á2ÉÊÓ"), "ÉÊÓÁ2");
  EXPECT_EQ(SourceDocumentOf("ÉÊ"), "");
}

}  // namespace
}  // namespace korvel::accounting
