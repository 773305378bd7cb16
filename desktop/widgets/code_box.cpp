#include "widgets/code_box.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QShortcut>
#include <QTimer>
#include <utility>

#include "gateways/text.h"
#include "toolkit/text.h"
#include "widgets/search_window.h"

namespace korvel::desktop {

namespace {

constexpr int kBoxCharacters = 14;
constexpr int kNameCharacters = 22;

int WidthOf(const QWidget& widget, int characters) {
  return widget.fontMetrics().averageCharWidth() * characters;
}

QLineEdit* MakeBox(std::string_view name, QWidget* parent) {
  auto* box = new QLineEdit(parent);
  box->setObjectName(ToQt(name));
  box->setMinimumWidth(WidthOf(*box, kBoxCharacters));
  return box;
}

/// Takes no focus, so that pressing it does not leave the box.
QPushButton* MakeButton(std::string_view name, QWidget* parent) {
  auto* button = new QPushButton("...", parent);
  button->setObjectName(ToQt(name));
  button->setAutoDefault(false);
  button->setFocusPolicy(Qt::NoFocus);
  button->setMaximumWidth(2 * button->fontMetrics().height());
  button->setToolTip("Pesquisar (F4)");
  button->setAccessibleName("Pesquisar");
  return button;
}

QLabel* MakeLabel(std::string_view name, QWidget* parent) {
  if (name.empty()) return nullptr;
  auto* label = new QLabel(parent);
  label->setObjectName(ToQt(name));
  label->setTextFormat(Qt::PlainText);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  label->setMinimumWidth(WidthOf(*label, kNameCharacters));
  return label;
}

}  // namespace

CodeBox::CodeBox(Desk& desk, const CodeBoxNames& names, periods::TableSearch search, QWidget* parent)
    : QWidget(parent),
      desk_(desk),
      search_(std::move(search)),
      whenEmpty_(names.whenEmpty),
      box_(MakeBox(names.box, this)),
      button_(MakeButton(names.button, this)),
      label_(MakeLabel(names.label, this)) {
  Arrange();
  ShowName(whenEmpty_);
  setFocusProxy(box_);
  connect(box_, &QLineEdit::editingFinished, this, [this] { Leave(); });
  connect(button_, &QPushButton::clicked, this, [this] { OpenSearch({}); });
  auto* key = new QShortcut(QKeySequence(Qt::Key_F4), box_);
  key->setContext(Qt::WidgetShortcut);
  connect(key, &QShortcut::activated, this, [this] { OpenSearch({}); });
}

/// A box with the cursor says that it is left when it goes, too late for its CodeBox.
CodeBox::~CodeBox() {
  box_->disconnect(this);
}

void CodeBox::Arrange() {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(box_, 1);
  row->addWidget(button_);
  if (label_ != nullptr) row->addWidget(label_, 2);
}

std::string CodeBox::Codigo() const {
  return FromQt(box_->text());
}

void CodeBox::SetCodigo(std::string_view code) {
  box_->setText(ToQt(code));
  accepted_ = code;
  Look(false);
}

void CodeBox::SetCodigoSemNome(std::string_view code) {
  box_->setText(ToQt(code));
  accepted_ = looked_ = code;
  ShowName(code.empty() ? whenEmpty_ : std::string());
}

void CodeBox::SetSearch(periods::TableSearch search) {
  search_ = std::move(search);
  looked_.clear();
}

void CodeBox::Leave() {
  const std::string typed = Codigo();
  if (typed == looked_ || desk_.IsBusy()) return;
  if (periods::AsksForWindow(typed)) {
    OpenSearch(periods::WithoutSigns(typed));
  } else {
    Look(true);
  }
}

void CodeBox::Look(bool showRefusal) {
  looked_ = Codigo();
  if (toolkit::IsBlank(looked_)) {
    accepted_.clear();
    ShowName(whenEmpty_);
    if (showRefusal) TellChange();
    return;
  }
  const auto lookup = desk_
                          .Try([&](const session::Context& context) {
                            return periods::Pesq(context, search_, looked_, showRefusal);
                          })
                          .value_or(periods::Lookup());
  ShowName(lookup.row ? lookup.row->name : std::string());
  if (lookup.unknown && showRefusal) Retype();
  if (!lookup.row) return;
  accepted_ = looked_;
  if (showRefusal) Take(*lookup.row);
}

void CodeBox::OpenSearch(const std::string& typed) {
  if (desk_.IsBusy()) return;
  looked_ = Codigo();
  SearchWindow window(desk_, search_, typed, this);
  if (const auto chosen = window.Choose()) {
    Take(*chosen);
  } else if (periods::AsksForWindow(looked_)) {
    box_->setText(ToQt(accepted_));
    looked_ = accepted_;
  }
  box_->setFocus();
}

void CodeBox::Take(const periods::FoundRow& row) {
  box_->setText(ToQt(row.key));
  accepted_ = looked_ = Codigo();
  ShowName(row.name);
  TellChange();
}

void CodeBox::ShowName(std::string_view name) {
  if (label_ == nullptr) return;
  label_->setText(ToQt(name));
  label_->setToolTip(ToQt(name));
}

void CodeBox::TellChange() {
  if (onChange) onChange();
}

/// Once what took the focus has it.
void CodeBox::Retype() {
  QTimer::singleShot(0, box_, [this] {
    box_->setFocus();
    box_->selectAll();
  });
}

}  // namespace korvel::desktop
