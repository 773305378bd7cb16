#include "gateways/work_box.h"

#include <QVBoxLayout>

#include "gateways/text.h"

namespace korvel::desktop {

namespace {

constexpr int kRefreshMilliseconds = 100;
constexpr int kBarSteps = 1000;

int BarValue(const WorkProgress::State& state) {
  return state.total > 0 ? static_cast<int>(std::min(state.done, state.total) * kBarSteps / state.total) : 0;
}

}  // namespace

WorkBox::WorkBox(WorkProgress& progress, QWidget* parent)
    : QDialog(parent),
      progress_(progress),
      lblTitulo_(new QLabel(this)),
      lblRegisto_(new QLabel(this)),
      lblContagem_(new QLabel(this)),
      pgBar_(new QProgressBar(this)),
      cmdCancelar_(new QPushButton("&Cancelar", this)) {
  setObjectName("PRG_Progress");
  setWindowTitle("Korvel");
  setWindowModality(Qt::ApplicationModal);
  setMinimumWidth(480);
  pgBar_->setTextVisible(false);
  lblRegisto_->setTextFormat(Qt::PlainText);
  lblRegisto_->setWordWrap(true);
  lblTitulo_->setObjectName("lblTitulo");
  lblRegisto_->setObjectName("lblRegisto");
  lblContagem_->setObjectName("lblContagem");
  pgBar_->setObjectName("pgBar");
  cmdCancelar_->setObjectName("cmdCancelar");
  auto* column = new QVBoxLayout(this);
  for (QWidget* widget : std::initializer_list<QWidget*>{lblTitulo_, pgBar_, lblContagem_, lblRegisto_}) {
    column->addWidget(widget);
  }
  column->addWidget(cmdCancelar_, 0, Qt::AlignRight);
  // Keys that were meant for the window behind do not cancel; Escape and the access key do.
  cmdCancelar_->setAutoDefault(false);
  cmdCancelar_->setFocusPolicy(Qt::NoFocus);
  connect(cmdCancelar_, &QPushButton::clicked, this, [this] { reject(); });
  connect(&timer_, &QTimer::timeout, this, [this] { Refresh(); });
  timer_.start(kRefreshMilliseconds);
  Refresh();
}

void WorkBox::reject() {
  progress_.Cancel();
  cmdCancelar_->setEnabled(false);
  Refresh();
}

void WorkBox::Refresh() {
  const auto state = progress_.Now();
  const QString caption = state.caption.empty() ? QString("Aguarde por favor...") : ToQt(state.caption);
  lblTitulo_->setText(progress_.IsCancelled() ? QString("A cancelar...") : caption);
  lblRegisto_->setText(ToQt(state.detail));
  lblContagem_->setText(ToQt(ProgressText(state, std::chrono::steady_clock::now())));
  // Without a total the bar moves to and fro.
  pgBar_->setRange(0, state.total > 0 ? kBarSteps : 0);
  pgBar_->setValue(BarValue(state));
}

}  // namespace korvel::desktop
