#include "security/rights_catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <algorithm>

#include "desktop/desktop_world.h"
#include "gateways/text.h"
#include "shell/form_table.h"

namespace korvel::desktop {
namespace {

/// Guarded forms whose windows are still to come: on a command line their rights count already.
constexpr std::string_view kWithoutWindow[] = {
    "frmLogGeral",          "frmAlteraPassword",
    "frmImpTabHeader",      "frmImpCustomerBrevant",
    "frmImpCustomerLunder", "frmImpSupplierLunder",
    "frmImpGeneralLedger",  "frmImpGeneralLedgerEntriesLunder",
    "frmImpTaxTableLunder", "frmImpTaxTableBrevant",
    "frmImpProductBrevant", "frmImpSourceDocumentsBrevant",
};

struct Button {
  std::string name;
  std::string caption;
  friend bool operator==(const Button&, const Button&) = default;
};
void PrintTo(const Button& button, std::ostream* out) {
  *out << button.name << " \"" << button.caption << '"';
}

/// Those of the window that get a right.
std::vector<Button> GuardableIn(const Form& form) {
  std::vector<Button> buttons;
  for (const QPushButton* button : form.findChildren<QPushButton*>()) {
    Button found{FromQt(button->objectName()), FromQt(button->text())};
    if (security::IsGuardable(found.name, found.caption)) buttons.push_back(std::move(found));
  }
  return buttons;
}

/// A button of the window that has no right, such as the one that leaves the form.
bool Shows(const Form& form, const security::FormButton& button) {
  const auto* found = form.findChild<QPushButton*>(ToQt(button.name));
  return found != nullptr && found->text() == ToQt(button.caption);
}

void ExpectButtonsOf(const security::CatalogueForm& entry, const Form& form) {
  std::vector<Button> guarded;
  for (const security::FormButton& button : entry.buttons) {
    EXPECT_TRUE(Shows(form, button)) << button.name << " \"" << button.caption << '"';
    if (security::IsGuardable(button.name, button.caption)) {
      guarded.push_back({std::string(button.name), std::string(button.caption)});
    }
  }
  EXPECT_THAT(GuardableIn(form), testing::UnorderedElementsAreArray(guarded));
}

TEST(RightsCatalogue, EveryWindowHasItsButtonsAndNoOthers) {
  DesktopWorld world;
  for (const security::CatalogueForm& entry : security::RightsCatalogue()) {
    SCOPED_TRACE(std::string(entry.name));
    const std::unique_ptr<Form> form(MakeForm(world.desk, entry.name, nullptr));
    const bool toCome = std::ranges::find(kWithoutWindow, entry.name) != std::end(kWithoutWindow);
    EXPECT_EQ(form == nullptr, toCome) << "whether its window is there";
    if (form) ExpectButtonsOf(entry, *form);
  }
}

}  // namespace
}  // namespace korvel::desktop
