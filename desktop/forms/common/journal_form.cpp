#include "forms/common/journal_form.h"

#include <memory>
#include <string>
#include <utility>

#include "forms/common/review_reader.h"
#include "security/rights_catalogue.h"
#include "toolkit/list_rows.h"

namespace korvel::desktop {

JournalForm::JournalForm(Desk& desk, JournalKind kind, QWidget* parent)
    : PeriodGridForm(desk, {kind.form, kind.grid, kind.periods, *kind.table, false}, parent),
      kind_(std::move(kind)) {
  Arrange({CatalogueButton(
               "cmdCalcular", [this] { Process(); }, Writes::Yes),
           CatalogueButton("cmdVerRegistos", [this] { Review(); }),
           CatalogueButton(
               "cmdGravar", [this] { Save(); }, Writes::Yes),
           CatalogueButton("cmdLimpaLVW", [this] { ClearGrid(); }),
           CatalogueButton("cmdFechar", [this] { reject(); })});
  // The rows shown are those of the period that was chosen before.
  eselFiscalYear_->onChange = [this] { ClearGrid(); };
}

/// The grid is emptied first: a review that still reads would stand in the way of what is to be replaced.
void JournalForm::Process() {
  if (!HasPeriod()) return;
  ClearGrid();
  const auto chosen = eselFiscalYear_->Chosen();
  desk_.Try([&](const session::Context& context) { kind_.process(context, chosen); });
  grid_->setFocus();
}

void JournalForm::Review() {
  if (!HasPeriod()) return;
  const auto reader =
      std::make_shared<ReviewReader>(desk_, [review = kind_.review, chosen = eselFiscalYear_->Chosen()](
                                                const session::Context& context, const RowFeed::Sink& sink) {
        return review(context, chosen, sink);
      });
  auto feed = std::make_unique<RowFeed>([reader](const RowFeed::Sink& sink) { reader->Read(sink); });
  if (Model().SetFeed(std::move(feed))) {
    ShowCount(reader->Count());
  } else if (reader->Accepted()) {
    ClearGrid();
  }
}

void JournalForm::ShowCount(std::int64_t count) {
  const std::string shown = toolkit::CountText(static_cast<std::size_t>(count), desk_.Session().Marks());
  SetCaption(std::string(security::FormCaption(Name())) + " - " + shown);
  SetCaptionDetail(eselFiscalYear_->Texto());
  grid_->setFocus();
}

/// What waits in a feed is a part of what is saved; without it nothing is.
void JournalForm::Save() {
  if (!HasPeriod() || !Model().ReadAll()) return;
  const auto chosen = eselFiscalYear_->Chosen();
  desk_.Try([&](const session::Context& context) { kind_.save(context, chosen, Model().Rows()); });
}

}  // namespace korvel::desktop
