#pragma once

#include <vector>

#include "data/connection.h"
#include "periods/warehouses.h"

namespace korvel::cli {

/// The warehouses as `TabArmazens` holds them: what the parameters' form keeps when it is saved without the billing
/// product at hand. Throws data::Error.
std::vector<periods::Warehouse> StoredWarehouses(data::Connection& company);

}  // namespace korvel::cli
