#include "forms/periods/frm_param_geral.h"

#include <optional>
#include <string>
#include <utility>

#include "periods/company_connection.h"
#include "periods/movement_types.h"
#include "toolkit/text.h"

namespace korvel::desktop {

namespace {

/// A warehouse with a region stands out.
constexpr std::uint32_t kClassifiedColour = 0xFF0000;
constexpr std::uint32_t kPlainColour = 0;

/// The columns of lvwArmazens.
enum WarehouseColumn : std::size_t { kCode, kDescription, kRegion };

periods::GridRow RowOf(const periods::Warehouse& warehouse) {
  return {false,
          {warehouse.armazem, warehouse.descricao, warehouse.classificacao},
          warehouse.classificacao.empty() ? kPlainColour : kClassifiedColour};
}

periods::Grid RowsOf(const std::vector<periods::MovementType>& types) {
  periods::Grid rows;
  for (const periods::MovementType& type : types) {
    rows.push_back({false,
                    {type.codigo, type.descricao, type.classificacao, type.afectaCli, type.afectaStk,
                     type.modulo, type.afectaIVA}});
  }
  return rows;
}

struct Stored {
  bool hasRow = false;
  periods::Parameters parameters;
};

std::optional<Stored> ReadStored(const session::Context& context) {
  const auto company = periods::OpenCompany(context);
  if (!company) return std::nullopt;
  const auto row = periods::ReadParameters(*company);
  return Stored{row.has_value(), row.value_or(periods::Parameters())};
}

/// Looks the names behind codes up, now that their server can be reached.
void LookUp(const std::vector<CodeBox*>& boxes) {
  for (CodeBox* box : boxes) box->SetCodigo(box->Codigo());
}

}  // namespace

bool frmParamGeral::Load() {
  const auto stored = desk_.Try(ReadStored);
  if (!stored || !*stored) return false;
  const periods::Parameters& parameters = (*stored)->parameters;
  brevant_->SetLocation(parameters.brevant);
  lunder_->SetLocation(parameters.lunder);
  bindings_.Show(parameters);
  if ((*stored)->hasRow) {
    if (!toolkit::IsBlank(parameters.brevant.server)) CarregarTiposMov();
    CarregarArmazens();
  }
  const auto links = desk_.Try([&](const session::Context& context) {
    return periods::VerLigacoes(context, parameters.brevant, parameters.lunder);
  });
  if (links) ShowLinks(*links);
  return true;
}

void frmParamGeral::EnterPage() {
  if (desk_.IsBusy()) return;
  const QWidget* page = tabPaginas_->currentWidget();
  const auto isToLoad = [&](GridPanel* grid) {
    return page->isAncestorOf(grid) && grid->Model().Rows().empty();
  };
  if (isToLoad(lvwTiposMov_)) CarregarTiposMov();
  if (isToLoad(lvwArmazens_)) CarregarArmazens();
}

void frmParamGeral::ShowLinks(const periods::Links& links) {
  brevant_->ShowLink(links.brevant);
  lunder_->ShowLink(links.lunder);
  if (links.brevant) LookUp(brevantCodes_);
  if (links.lunder) LookUp(lunderCodes_);
}

void frmParamGeral::ActivarLigacoes() {
  const periods::Parameters shown = Shown();
  const auto links =
      desk_.Try([&](const session::Context& context) { return periods::ActivarLigacoes(context, shown); });
  if (links && *links) ShowLinks(**links);
}

void frmParamGeral::CarregarTiposMov() {
  const auto types =
      desk_.Try([](const session::Context& context) { return periods::CarregarTiposMov(context); });
  lvwTiposMov_->Model().SetRows(types ? RowsOf(*types) : periods::Grid());
}

void frmParamGeral::CarregarArmazens() {
  const auto warehouses = desk_.Try([](const session::Context& context) -> std::vector<periods::Warehouse> {
    const auto company = periods::OpenCompany(context);
    if (!company) return {};
    return periods::CarregarArmazens(context, *company);
  });
  if (!warehouses) return;
  periods::Grid rows;
  for (const periods::Warehouse& warehouse : *warehouses) rows.push_back(RowOf(warehouse));
  lvwArmazens_->Model().SetRows(std::move(rows));
  if (!lvwArmazens_->Model().Rows().empty()) lvwArmazens_->SelectRow(0);
}

void frmParamGeral::ShowWarehouse() {
  if (const auto row = lvwArmazens_->CurrentRow()) {
    eselArmazemClassifica_->SetChave(lvwArmazens_->Model().Rows().at(*row).cells.at(kRegion));
  }
}

void frmParamGeral::ActualizaArmazem() {
  const auto row = lvwArmazens_->CurrentRow();
  if (!row) return;
  lvwArmazens_->Model().Edit([&](periods::Grid& rows) {
    periods::GridRow& edited = rows.at(*row);
    edited.cells.at(kRegion) = eselArmazemClassifica_->Chave();
    edited.colour = edited.cells.at(kRegion).empty() ? kPlainColour : kClassifiedColour;
  });
}

void frmParamGeral::Gravar() {
  const periods::Parameters shown = Shown();
  const auto warehouses = Warehouses();
  const bool saved = desk_
                         .Try([&](const session::Context& context) {
                           return periods::GravarParametros(context, shown, warehouses);
                         })
                         .value_or(false);
  if (saved) accept();
}

periods::Parameters frmParamGeral::Shown() const {
  periods::Parameters parameters;
  parameters.brevant = brevant_->Location();
  parameters.lunder = lunder_->Location();
  bindings_.Read(parameters);
  return parameters;
}

std::vector<periods::Warehouse> frmParamGeral::Warehouses() const {
  std::vector<periods::Warehouse> warehouses;
  for (const periods::GridRow& row : lvwArmazens_->Model().Rows()) {
    warehouses.push_back({row.cells.at(kCode), row.cells.at(kDescription), row.cells.at(kRegion)});
  }
  return warehouses;
}

}  // namespace korvel::desktop
