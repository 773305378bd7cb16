#include <gmock/gmock.h>

#include "brevant_world.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class LostConnection : public BrevantWorld {};

TEST_F(LostConnection, LeavesTheEarlierDocuments) {
  IncludeRemoved();
  AddDocument({});
  ASSERT_TRUE(Run()) << LastText();
  AddDocument({{"Numero", "00000003"}, {"Pais", ""}});
  AddLine({{"Numero", "00000003"}});
  AddRemoved({{"Numero", "00000002"}});
  std::size_t lost = 0;
  for (; !Losing(lost, [&] { return Run(); }); ++lost) {
    EXPECT_THAT(LastText(), HasSubstr("Perdida a ligação ao servidor"));
    const std::string at = server.statements.at(lost);
    ASSERT_THAT(Staged("InvoiceNo"), ElementsAre("FT1 2011/00000001")) << at;
  }
  EXPECT_GT(lost, 20U) << "it was lost at every statement of the run";
  EXPECT_THAT(Staged("InvoiceNo"),
              ElementsAre("FT1 2011/00000001", "FT1 2011/00000002", "FT1 2011/00000003"));
}

}  // namespace
}  // namespace korvel::test
