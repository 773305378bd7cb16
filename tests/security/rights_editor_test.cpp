#include "security/rights_editor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "security_world.h"

namespace korvel::security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Editor : public testing::Test, protected test::SecurityWorld {
 protected:
  Editor() {
    Script(
        "insert into Acessos (Utilizador,Empresa,Chave,Chave1,Form,Ctrl,Caption,CtrlCap,Value) values "
        "('XX','XXXX','korvel','','','','Korvel','',0),"
        "('XX','XXXX','korvelfrmB','korvel','frmB','','Janela B','',1),"
        "('XX','XXXX','korvelfrmBcmdGravar','korvelfrmB','frmB','cmdGravar','Janela B','Gravar',1),"
        "('XX','XXXX','korvelfrmBcmdFechar','korvelfrmB','frmB','cmdFechar','Janela B','Fechar',1),"
        "('XX','XXXX','korvelfrmA','korvel','frmA','','Janela A','',1),"
        "('XX','XXXX','korvelfrmAcmdVer','korvelfrmA','frmA','cmdVer','Janela A','Ver','1')");
  }
  RightsEditor Loaded() {
    RightsEditor editor("ana", "0001");
    EXPECT_TRUE(editor.Load(context));
    return editor;
  }
  static std::string Marks(const RightsEditor& editor) {
    std::string marks;
    for (const RightNode& node : editor.Nodes()) marks += node.allowed ? '1' : '0';
    return marks;
  }
  /// The marks on the server in the order of the tree.
  std::string Stored() {
    std::string marks;
    for (const std::string& row : Rows("select Value from Acessos where Utilizador='ana' and Empresa='0001' "
                                       "and Ctrl<>'cmdFechar' order by Form,Chave"))
      marks += row;
    return marks;
  }
};

TEST_F(Editor, TreeOfAUserWithoutRightsIsTheBaseSet) {
  const RightsEditor editor = Loaded();
  EXPECT_EQ(editor.Caption(), "Actualização de Acessos (ana)");
  std::vector<std::string> texts;
  for (const RightNode& node : editor.Nodes()) texts.push_back(node.text);
  EXPECT_THAT(texts, ElementsAre(kProgramCaption, "Janela A", "Ver", "Janela B", "Gravar"));
  EXPECT_EQ(Marks(editor), "11111");
  EXPECT_EQ(Stored(), "11111");
}

TEST_F(Editor, SwitchingItemsAndAll) {
  RightsEditor editor = Loaded();
  editor.LigaDesliga(3);
  EXPECT_EQ(Marks(editor), "11100") << "a form and its buttons";
  editor.LigaDesliga(4);
  EXPECT_EQ(Marks(editor), "11101") << "one button";
  editor.LigaDesligatodos();
  EXPECT_EQ(Marks(editor), "00010");
  editor.LigaDesliga(0);
  EXPECT_EQ(Marks(editor), "11111") << "the program and all below it";
  editor.Desligto();
  EXPECT_EQ(Marks(editor), "00000");
  editor.Ligto();
  EXPECT_EQ(Marks(editor), "11111");
  EXPECT_THROW(editor.LigaDesliga(5), std::out_of_range);
}

TEST_F(Editor, SavesWhatChangedAndLogsIt) {
  RightsEditor editor = Loaded();
  editor.Desligto();
  editor.Set(2, true);
  server.statements.clear();
  ASSERT_TRUE(editor.Gravar(context));
  const auto updates = std::count_if(server.statements.begin(), server.statements.end(),
                                     [](const auto& text) { return text.starts_with("update acessos"); });
  EXPECT_EQ(updates, 3);
  EXPECT_EQ(Stored(), "10100") << "the program's own mark is not kept";
  EXPECT_THAT(Rows("select Modulo,Accao,FormCaption,Conteudo,CodEmpresa,Utilizador from LogGeral"),
              ElementsAre("UT\tA\tActualização de Acessos (ana)\tActualização de Acessos (ana)\t0001\tana"));
  ASSERT_TRUE(editor.Gravar(context));
  EXPECT_EQ(One("select count(*) from LogGeral"), "1") << "nothing had changed";
}

TEST_F(Editor, UpdateBringsNewItemsAndKeepsSavedMarks) {
  RightsEditor editor = Loaded();
  editor.Set(4, false);
  ASSERT_TRUE(editor.Gravar(context));
  Script(
      "insert into Acessos (Utilizador,Empresa,Chave,Chave1,Form,Ctrl,Caption,CtrlCap,Value) values "
      "('XX','XXXX','korvelfrmC','korvel','frmC','','Janela C','',0)");
  ASSERT_TRUE(editor.Load(context));
  EXPECT_EQ(editor.Nodes().size(), 5U) << "a user with rights keeps them as they are";
  ASSERT_TRUE(editor.Actop(context));
  EXPECT_EQ(Marks(editor), "111101");
}

TEST_F(Editor, FindsItemsOneAfterAnother) {
  RightsEditor editor = Loaded();
  EXPECT_EQ(editor.Procurar(context, "janela"), 1U);
  EXPECT_EQ(editor.Procurar(context, "JANELA"), 3U);
  EXPECT_EQ(editor.Procurar(context, "janela"), std::nullopt);
  EXPECT_EQ(server.dialogs.LastText(), "Não foi Encontrado mais nenhum item !");
  EXPECT_EQ(editor.Procurar(context, "nada"), std::nullopt);
  EXPECT_EQ(server.dialogs.LastText(), "Não foi Encontrado nenhum item !");
  EXPECT_EQ(editor.Procurar(context, "b"), 3U);
}

TEST_F(Editor, UserWithoutRightsAndBaseSetHasAnEmptyTree) {
  Script("delete from Acessos");
  RightsEditor editor("ana", "0001");
  ASSERT_TRUE(editor.Load(context));
  EXPECT_EQ(Marks(editor), "0");
  EXPECT_EQ(server.dialogs.messages.size(), 1U);
}

}  // namespace
}  // namespace korvel::security
