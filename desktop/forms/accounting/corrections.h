#pragma once

#include "forms/accounting/frm_customer_ins.h"
#include "forms/accounting/frm_tax_table_ins.h"
#include "forms/common/extraction_form.h"

namespace korvel::desktop {

/// What `cmdAlterar` does in a grid of customers or suppliers. `desk` and `table` outlive it.
inline auto CorrectingCustomers(Desk& desk, const periods::StagedTable& table) {
  return [&desk, &table](QWidget* parent, GridModel& grid, std::size_t row) {
    frmCustomerIns(desk, table, grid, row, parent).Abrir();
  };
}

/// The same in a grid of taxes.
inline auto CorrectingTaxes(Desk& desk, const periods::StagedTable& table) {
  return [&desk, &table](QWidget* parent, GridModel& grid, std::size_t row) {
    frmTaxTableIns(desk, table, grid, row, parent).Abrir();
  };
}

}  // namespace korvel::desktop
