#pragma once

#include <string_view>

#include "forms/common/form.h"

namespace korvel::desktop {

/// Makes `frmCustomerBrevant`, `frmProductBrevant`, `frmTaxTableBrevant` or `frmSourceDocumentsBrevant`; null for
/// another name. Belongs to `parent`.
Form* MakeBillingForm(Desk& desk, std::string_view name, QWidget* parent);

}  // namespace korvel::desktop
