#pragma once

#include <string_view>

#include "forms/common/form.h"

namespace korvel::desktop {

/// Makes `frmGeneralLedger`, `frmGeneralLedgerEntriesLunder`, `frmCustomerLunder`, `frmSupplierLunder` or
/// `frmTaxTableLunder`; null for another name. Belongs to `parent`.
Form* MakeAccountingForm(Desk& desk, std::string_view name, QWidget* parent);

}  // namespace korvel::desktop
