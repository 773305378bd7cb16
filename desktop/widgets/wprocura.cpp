#include "widgets/wprocura.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "gateways/text.h"
#include "toolkit/list_rows.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::desktop {

namespace {

bool HoldsText(const periods::GridRow& row, const std::vector<toolkit::GridColumn>& columns,
               const std::string& upperWanted) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].width > 0 && toolkit::HoldsText(row.cells[i], upperWanted)) return true;
  }
  return false;
}

}  // namespace

WProcura::WProcura(Desk& desk, GridView& grid)
    : QDialog(&grid), desk_(desk), grid_(grid), txtProcura_(new QLineEdit(this)) {
  setObjectName("WProcura");
  setWindowTitle("Procurar");
  txtProcura_->setObjectName("txtProcura");
  auto* fields = new QFormLayout;
  fields->addRow("&Texto:", txtProcura_);
  auto* buttons = new QDialogButtonBox(this);
  auto* find = buttons->addButton("&Procurar", QDialogButtonBox::ActionRole);
  auto* leave = buttons->addButton("&Fechar", QDialogButtonBox::RejectRole);
  find->setObjectName("cmdProcurar");
  find->setDefault(true);
  leave->setObjectName("cmdFechar");
  auto* column = new QVBoxLayout(this);
  column->addLayout(fields);
  column->addWidget(buttons);
  connect(find, &QPushButton::clicked, this, [this] { FindNext(); });
  connect(leave, &QPushButton::clicked, this, [this] { reject(); });
}

void WProcura::Open() {
  show();
  activateWindow();
  txtProcura_->setFocus();
  txtProcura_->selectAll();
}

bool WProcura::FindNext() {
  const std::string wanted = toolkit::Upper(FromQt(txtProcura_->text()));
  if (wanted.empty() || desk_.IsBusy()) return false;
  const auto current = grid_.CurrentRow();
  const bool again = wanted == looked_ && current;
  looked_ = wanted;
  const auto row = RowWith(wanted, again ? *current + 1 : 0);
  if (row) {
    grid_.SelectRow(*row);
  } else if (!grid_.Model().HasMore()) {
    desk_.Dialogs().Message(toolkit::Icon::Information, again ? "Não foi Encontrado mais nenhum item !"
                                                              : "Não foi Encontrado nenhum item !");
  }
  return row.has_value();
}

/// Without one among the rows read, the others are read too; whoever cancels that is told nothing more.
std::optional<std::size_t> WProcura::RowWith(const std::string& wanted, std::size_t first) {
  GridModel& model = grid_.Model();
  const auto look = [&](const session::Context& context) -> std::optional<std::size_t> {
    toolkit::ProgressScope progress(context.progress, "A procurar...",
                                    static_cast<std::int64_t>(model.Rows().size()));
    for (; first < model.Rows().size(); ++first) {
      progress.Step();
      if (HoldsText(model.Rows()[first], model.Columns(), wanted)) return first;
    }
    return std::nullopt;
  };
  auto found = desk_.Try(look);
  if (found && !*found && model.HasMore() && model.ReadAll()) found = desk_.Try(look);
  return found.value_or(std::nullopt);
}

}  // namespace korvel::desktop
