#include "forms/session/company_grid.h"

#include <QStyledItemDelegate>

#include "resources/icons.h"

namespace korvel::desktop {

namespace {

/// The last column is hidden: the name of the picture.
constexpr std::string_view kLayout =
    " Codigo,1400/Nome da Empresa,5400/R,700,D,Valor/AP,700,C/AI,700,C/Versão,1300/Estado,0/";
constexpr std::size_t kCode = 0;
constexpr std::size_t kState = 6;

std::string PictureOf(const session::CompanyLine& company) {
  return std::string("empresa") + (company.main ? "-principal" : "") + (company.readOnly ? "-bloqueada" : "");
}

periods::GridRow RowOf(const session::CompanyLine& company) {
  const auto flag = [](bool set) { return std::string(set ? "1" : "0"); };
  return {.ticked = false,
          .cells = {company.code, company.description, std::to_string(company.numRegisto), flag(company.main),
                    flag(company.independent), company.version, PictureOf(company)}};
}

/// Draws a company's state before its code.
class StatePicture : public QStyledItemDelegate {
 public:
  StatePicture(GridModel& model, QObject* parent) : QStyledItemDelegate(parent), model_(model) {}

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = Icon(model_.Cell(static_cast<std::size_t>(index.row()), kState));
  }

 private:
  GridModel& model_;
};

}  // namespace

CompanyGrid::CompanyGrid(Desk& desk, std::string_view form, QWidget* parent)
    : GridPanel(desk, form, "lvwEmpresas", toolkit::ParseGridLayout(kLayout), false, parent) {
  View().setItemDelegateForColumn(static_cast<int>(kCode), new StatePicture(Model(), this));
}

void CompanyGrid::ShowCompanies(const session::CompanyLines& companies, std::string_view code) {
  periods::Grid rows;
  for (const auto& company : companies) rows.push_back(RowOf(company));
  Model().SetRows(std::move(rows));
  for (std::size_t row = 0; row < Model().Rows().size(); ++row) {
    if (Model().Cell(row, kCode) == code) SelectRow(row);
  }
}

std::string CompanyGrid::CurrentCode() {
  const auto row = CurrentRow();
  return row ? Model().Cell(*row, kCode) : std::string();
}

}  // namespace korvel::desktop
