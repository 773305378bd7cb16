#include "forms/session/frm_about.h"

#include <QLabel>

#include "databases/version.h"
#include "forms/common/field_grid.h"
#include "forms/session/heading.h"
#include "gateways/text.h"

namespace korvel::desktop {

namespace {

QLabel* Value(const char* name, std::string_view text) {
  auto* label = new QLabel(ToQt(text));
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

frmAbout::frmAbout(Desk& desk, QWidget* parent) : Form(desk, "frmAbout", parent) {
  SetCaption("Korvel - Info");
  const session::SessionRecord& session = desk.Session();
  FieldGrid facts;
  facts.Add("Versão :", Value("lblVersao", databases::ProgramVersion()));
  facts.Add("Empresa :", Value("lblEmpresa", session.gCodEmpresa + " - " + session.gNomeEmpresa));
  facts.Add("Base de dados :", Value("lblBaseDados", session.gBaseDados));
  facts.Add("SQL Server :", Value("lblServidor", session.gServidor));
  facts.Add("Login :", Value("lblLogin", session.gLogin));
  auto* column = FormColumn(this);
  column->addWidget(Heading("Exportação - Ficheiro Auditor", this));
  column->addLayout(facts.Layout());
  column->addStretch();
  column->addLayout(ButtonRow({PlainButton("cmdOK", "&OK", [this] { accept(); })}));
}

}  // namespace korvel::desktop
