#include <QGroupBox>
#include <QSize>
#include <QVBoxLayout>
#include <initializer_list>

#include "forms/common/field_grid.h"
#include "forms/periods/frm_param_geral.h"
#include "gateways/text.h"
#include "toolkit/grid_layout.h"
#include "widgets/inteiro.h"

namespace korvel::desktop {

struct ParameterCode {
  std::string_view label;
  CodeBoxNames names;
  periods::TableSearch (*search)();
  ParameterBindings::Text member;
};

namespace {

using P = periods::Parameters;

constexpr std::string_view kMovementLayout =
    "Código,850/Descrição,3100/Classificação,1200,C/Af.Clientes,900,C/Af.Stocks,900,C/Módulo,700,C/"
    "IVA,500,C/";
constexpr std::string_view kWarehouseLayout = "Código,850/Descrição,3100/Classificação,4200,C/";

constexpr int kDescriptionCharacters = 50;
/// Money holds no more.
constexpr int kMostDecimals = 4;

struct Option {
  std::string_view name;
  std::string_view caption;
  std::string_view value;
};
constexpr Option kCustomerAccounts[]{
    {"optEquivCliente_Codigo", "Sem efeito \"Desconhecido\"", periods::kEquivCodigo},
    {"optEquivCliente_ContaA",
     "\"Conta A\" definida na Ficha de Clientes ( POC ou SNC consoante o Ano Fiscal )", "ContaContabil"},
    {"optEquivCliente_ContaB",
     "\"Conta B\" definida na Ficha de Clientes ( POC ou SNC consoante o Ano Fiscal )", "ContaContabilB"},
    {"optEquivCliente_ContaC",
     "\"Conta C\" definida na Ficha de Clientes ( POC ou SNC consoante o Ano Fiscal )", "ContaContabilC"},
    {"optEquivCliente_ContaD",
     "\"Conta D\" definida na Ficha de Clientes ( POC ou SNC consoante o Ano Fiscal )", "ContaContabilD"},
};
constexpr Option kLineDescriptions[]{
    {"optSourceDocuments_DescLinhaDoc_OBSLinha",
     "Observação da linha de lançamento do Produto (se for vazia = Descrição do Produto)", "ObsLinha"},
    {"optSourceDocuments_DescLinhaDoc_Descricao", "Descrição do Produto", "Descricao"},
};

constexpr ParameterCode kAccounts[]{
    {"Conta &inicial:",
     {"txtHeader_ContaInicial", "cmdHeader_ContaInicial", "lblHeader_ContaInicial", "Todas"},
     periods::Contas_Contabilidade,
     &P::Header_ContaInicial},
    {"Conta fina&l:",
     {"txtHeader_ContaFinal", "cmdHeader_ContaFinal", "lblHeader_ContaFinal", "Todas"},
     periods::Contas_Contabilidade,
     &P::Header_ContaFinal},
};
constexpr ParameterCode kProductCodes[]{
    {"Gr&upo:",
     {"txtProduct_Grupo", "cmdProduct_Grupo", "lblProduct_Grupo", "Todos"},
     periods::Grupo_Produtos,
     &P::Product_Grupo},
    {"Famíl&ia:",
     {"txtProduct_Familia", "cmdProduct_Familia", "lblProduct_Familia", "Todas"},
     periods::Familia_Produtos,
     &P::Product_Familia},
    {"&Subfamília:",
     {"txtProduct_SubFamilia", "cmdProduct_SubFamilia", "lblProduct_SubFamilia", "Todas"},
     periods::SubFamilia_Produtos,
     &P::Product_SubFamilia},
    {"Situaçã&o:",
     {"txtProduct_Situacao", "cmdProduct_Situacao", "lblProduct_Situacao", "Todas"},
     periods::Situacoes_Brevant,
     &P::Product_Situacao},
};

/// A titled group at the end of a page, and the column inside it.
QVBoxLayout* AddGroup(QBoxLayout* page, const char* title) {
  auto* group = new QGroupBox(title);
  page->addWidget(group);
  auto* column = new QVBoxLayout(group);
  column->setSpacing(kSpacing);
  return column;
}

QHBoxLayout* LeftRow(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  row->setSpacing(kSpacing);
  for (QWidget* widget : widgets) row->addWidget(widget);
  row->addStretch();
  return row;
}

constexpr QSize kParametersSize(820, 560);

}  // namespace

frmParamGeral::frmParamGeral(Desk& desk, QWidget* parent) : Form(desk, "frmParamGeral", parent) {
  tabPaginas_ = new QTabWidget(this);
  tabPaginas_->setObjectName("tabPaginas");
  tabPaginas_->addTab(LocationPage(), "Localizações");
  tabPaginas_->addTab(LedgerPage(), "General Ledger");
  tabPaginas_->addTab(CustomerPage(), "Clientes e IVA");
  tabPaginas_->addTab(ProductPage(), "Produtos");
  tabPaginas_->addTab(DocumentPage(), "Documentos");
  tabPaginas_->addTab(WarehousePage(), "Armazéns");
  connect(tabPaginas_, &QTabWidget::currentChanged, this, [this] { EnterPage(); });
  auto* column = FormColumn(this);
  column->addWidget(tabPaginas_, 1);
  column->addLayout(ButtonRow({CatalogueButton(
                                   "cmdGravar", [this] { Gravar(); }, Writes::Yes),
                               CatalogueButton("cmdFechar", [this] { reject(); })}));
  resize(kParametersSize);
}

QWidget* frmParamGeral::LocationPage() {
  auto* page = new QWidget(tabPaginas_);
  auto* column = FormColumn(page);
  auto* sides = new QHBoxLayout;
  sides->setSpacing(kSpacing);
  brevant_ = new SourceBox(desk_, {"Brevant", "Brevant (Gestão)", "cmdDBBrevant", "shpLigaGest"}, page);
  lunder_ = new SourceBox(desk_, {"Lunder", "Lunder (Contabilidade)", "cmdDBLunder", "shpLigaPOC"}, page);
  sides->addWidget(brevant_);
  sides->addWidget(lunder_);
  column->addLayout(sides);
  column->addLayout(LeftRow({CatalogueButton(
      "cmdActivarLigacoes", [this] { ActivarLigacoes(); }, Writes::Yes)}));
  auto* decimals = new Inteiro(desk_, "eintCasasDecimais", page);
  decimals->SetMinimo(0);
  decimals->SetMaximo(kMostDecimals);
  bindings_.Bind(decimals, &P::CasasDec);
  FieldGrid fields(2);
  fields.Add("&Casas decimais:", decimals);
  column->addLayout(fields.Layout());
  column->addStretch();
  return page;
}

QWidget* frmParamGeral::LedgerPage() {
  auto* page = new QWidget(tabPaginas_);
  auto* column = FormColumn(page);
  auto* accounts = AddGroup(column, "GENERAL LEDGER - PLANO DE CONTAS");
  AddTick(accounts, "chkHeader_ApenasDiarioSI",
          "Considerar apenas o \"Diário de Saldos Iniciais\" para cálculo de valores",
          &P::Header_ApenasDiarioSI);
  AddTick(accounts, "chkHeader_SaldoDiaAnterior",
          "O Cálculo do Saldo é até ao dia anterior da Data Inicial do período definido",
          &P::Header_SaldoDiaAnterior);
  FieldGrid fields;
  AddCodes(fields, kAccounts, lunderCodes_);
  accounts->addLayout(fields.Layout());
  AddTick(AddGroup(column, "GENERAL LEDGER ENTRIES - MOVIMENTOS"), "chkGeneralLedgerEntries_IncluirSI",
          "Incluir Saldos Iniciais", &P::GeneralLedgerEntries_IncluirSI);
  column->addStretch();
  return page;
}

QWidget* frmParamGeral::CustomerPage() {
  auto* page = new QWidget(tabPaginas_);
  auto* column = FormColumn(page);
  auto* accounts = AddGroup(column, "CUSTOMER - CLIENTES");
  std::vector<QRadioButton*> options;
  for (const Option& option : kCustomerAccounts) {
    options.push_back(AddOption(accounts, option.name, option.caption, &P::EquivCliente, option.value));
  }
  QCheckBox* grouped =
      AddTick(accounts, "chkAgrupaContasClientes",
              "Incluir as Contas da Contabilidade consideradas Clientes às Fichas de Clientes do Brevant",
              &P::AgrupaContasClientes);
  connect(options.front(), &QRadioButton::toggled, grouped, [grouped](bool byCode) {
    if (byCode) grouped->setChecked(false);
    grouped->setEnabled(!byCode);
  });
  AddTick(AddGroup(column, "TAX TABLE - TABELA DE IMPOSTOS"), "chkAgrupaIvas",
          "Incluir a Tabela de IVA da Contabilidade à Tabela de IVA do Brevant", &P::AgrupaIvas);
  column->addStretch();
  return page;
}

QWidget* frmParamGeral::ProductPage() {
  auto* page = new QWidget(tabPaginas_);
  auto* column = FormColumn(page);
  FieldGrid fields;
  AddCodes(fields, kProductCodes, brevantCodes_);
  auto* level = new SelOpta("eselProduct_Patamar", page);
  level->SetLista(periods::kPatamarList);
  bindings_.Bind(level, &P::Product_Patamar);
  fields.Add("&Patamar de envio", level);
  QLineEdit* usual = TextBox("txtProductDescriptionDefault", kDescriptionCharacters);
  bindings_.Bind(usual, &P::ProductDescriptionDefault);
  fields.Add("&Descrição por defeito:", usual);
  AddGroup(column, "PRODUCT - PRODUTOS")->addLayout(fields.Layout());
  column->addStretch();
  return page;
}

QWidget* frmParamGeral::DocumentPage() {
  auto* page = new QWidget(tabPaginas_);
  auto* column = FormColumn(page);
  auto* lines = AddGroup(column, "Descrição das linhas dos documentos");
  for (const Option& option : kLineDescriptions) {
    AddOption(lines, option.name, option.caption, &P::SourceDocuments_DescLinhaDoc, option.value);
  }
  AddTick(column, "chkIncluirDocumentosAnulados", "Incluir Documentos Anulados",
          &P::IncluirDocumentosAnulados);
  auto* types =
      AddGroup(column, "Tipos de Movimentos que vão ser alvo da Exportação de Documentos Comerciais");
  lvwTiposMov_ =
      new GridPanel(desk_, Name(), "lvwTiposMov", toolkit::ParseGridLayout(kMovementLayout), false, page);
  types->addWidget(lvwTiposMov_, 1);
  types->addLayout(LeftRow({CatalogueButton("cmdCarregarTiposMov", [this] { CarregarTiposMov(); })}));
  return page;
}

QWidget* frmParamGeral::WarehousePage() {
  auto* page = new QWidget(tabPaginas_);
  auto* column = FormColumn(page);
  lvwArmazens_ =
      new GridPanel(desk_, Name(), "lvwArmazens", toolkit::ParseGridLayout(kWarehouseLayout), false, page);
  column->addWidget(lvwArmazens_, 1);
  eselArmazemClassifica_ = new SelOpta("eselArmazemClassifica", page);
  eselArmazemClassifica_->SetLista(periods::kClassificacaoList);
  auto* caption = new QLabel("&Classificação:", page);
  caption->setBuddy(eselArmazemClassifica_);
  column->addLayout(LeftRow({caption, eselArmazemClassifica_,
                             CatalogueButton("cmdActualizaArmazem", [this] { ActualizaArmazem(); }),
                             CatalogueButton("cmdCarregarArmazens", [this] { CarregarArmazens(); })}));
  connect(lvwArmazens_->View().selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this] { ShowWarehouse(); });
  return page;
}

QCheckBox* frmParamGeral::AddTick(QBoxLayout* column, std::string_view name, std::string_view caption,
                                  ParameterBindings::Flag member) {
  auto* tick = new QCheckBox(ToQt(caption));
  tick->setObjectName(ToQt(name));
  column->addWidget(tick);
  bindings_.Bind(tick, member);
  return tick;
}

QRadioButton* frmParamGeral::AddOption(QBoxLayout* column, std::string_view name, std::string_view caption,
                                       ParameterBindings::Text member, std::string_view value) {
  auto* option = new QRadioButton(ToQt(caption));
  option->setObjectName(ToQt(name));
  column->addWidget(option);
  bindings_.Bind(option, member, value);
  return option;
}

void frmParamGeral::AddCodes(FieldGrid& fields, std::span<const ParameterCode> codes,
                             std::vector<CodeBox*>& boxes) {
  for (const ParameterCode& code : codes) {
    auto* box = new CodeBox(desk_, code.names, code.search(), tabPaginas_);
    bindings_.Bind(box, code.member);
    fields.Add(code.label, box);
    boxes.push_back(box);
  }
}

}  // namespace korvel::desktop
