#include "shell/form_table.h"

#include "forms/accounting/accounting_forms.h"
#include "forms/auditfile/frm_exporta_saft.h"
#include "forms/automation/frm_wizard.h"
#include "forms/billing/billing_forms.h"
#include "forms/periods/frm_aa_responsavel.h"
#include "forms/periods/frm_param_geral.h"
#include "forms/periods/frm_tab_header.h"
#include "forms/session/frm_about.h"

namespace korvel::desktop {

namespace {

struct FormRow {
  std::string_view form;
  Form* (*make)(Desk& desk, std::string_view form, QWidget* parent);
};

template <typename Made>
Form* Make(Desk& desk, std::string_view, QWidget* parent) {
  return new Made(desk, parent);
}

constexpr FormRow kForms[] = {
    {"frmTabHeader", &Make<frmTabHeader>},
    {"frmGeneralLedger", &MakeAccountingForm},
    {"frmCustomerLunder", &MakeAccountingForm},
    {"frmSupplierLunder", &MakeAccountingForm},
    {"frmTaxTableLunder", &MakeAccountingForm},
    {"frmGeneralLedgerEntriesLunder", &MakeAccountingForm},
    {"frmCustomerBrevant", &MakeBillingForm},
    {"frmProductBrevant", &MakeBillingForm},
    {"frmTaxTableBrevant", &MakeBillingForm},
    {"frmSourceDocumentsBrevant", &MakeBillingForm},
    {"frmExportaSAFT", &Make<frmExportaSAFT>},
    {"frmWizard", &Make<frmWizard>},
    {"frmParamGeral", &Make<frmParamGeral>},
    {"frmAAResponsavel", &Make<frmAAResponsavel>},
    {"frmAbout", &Make<frmAbout>},
};

}  // namespace

Form* MakeForm(Desk& desk, std::string_view form, QWidget* parent) {
  for (const FormRow& row : kForms) {
    if (row.form == form) return row.make(desk, row.form, parent);
  }
  return nullptr;
}

std::span<const std::string_view> FormNames() {
  static const auto names = [] {
    std::vector<std::string_view> all;
    for (const FormRow& row : kForms) all.push_back(row.form);
    return all;
  }();
  return names;
}

}  // namespace korvel::desktop
