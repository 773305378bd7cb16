#include <gtest/gtest.h>

#include <set>

#include "security/rights_catalogue.h"
#include "toolkit/text.h"

namespace korvel::security {
namespace {

TEST(Catalogue, WhatCanBeGuarded) {
  const struct {
    const char* name;
    const char* caption;
    bool guardable;
  } cases[] = {
      {"cmdGravar", "&Gravar", true},
      {"CMDGravar", "&Gravar", true},
      {"Eliminar", "&Eliminar", false},
      {"mycmdGravar", "Gravar", false},
      {"cmdFechar", "&Fechar", false},
      {"cmdOutro", "  Fec&ha tudo", false},
      {"cmdCancelar", "&Cancelar", false},
      {"cmdCancelar", "CANCEL", false},
      {"cmdVoltar", "Vo&ltar", false},
      {"cmdSair", "sair", false},
      {"cmdNaoSair", "Não Sair", true},
      {"cmdPath", "...", false},
      {"cmdNext", ">", false},
      {"cmdFirst", "<<", false},
      {"cmdMaior", "Maior >", true},
      {"cmdSim", "&Sim", false},
      {"cmdNao", "&Não", false},
      {"cmdnao", "&Não", false},
      {"cmdSimular", "&Simular", true},
      {"cmdSemNome", "", true},
  };
  for (const auto& [name, caption, guardable] : cases)
    EXPECT_EQ(IsGuardable(name, caption), guardable) << name << " " << caption;
}

TEST(Catalogue, KeysAreDistinctAndFormsAreFoundInAnyCase) {
  std::set<std::string> keys;
  for (const CatalogueForm& form : RightsCatalogue()) {
    EXPECT_TRUE(keys.insert(toolkit::Upper(RightKey(form.name))).second) << form.name;
    for (const FormButton& button : form.buttons)
      EXPECT_TRUE(keys.insert(toolkit::Upper(RightKey(form.name, button.name))).second) << button.name;
    EXPECT_EQ(FindForm(toolkit::Upper(form.name)), &form);
  }
  for (const char* none : {"frmBloquear", "frmAbout", "", "frm"}) EXPECT_EQ(FindForm(none), nullptr) << none;
}

}  // namespace
}  // namespace korvel::security
