#pragma once

#include <span>
#include <string_view>

#include "databases/schema.h"

namespace korvel::databases {

/// The database of a server that holds what spans its companies.
inline constexpr std::string_view kConfigDatabase = "KorvelConfig";

/// Its tables, in the order in which they are made.
std::span<const TableDefinition> ConfigSchema();

}  // namespace korvel::databases
