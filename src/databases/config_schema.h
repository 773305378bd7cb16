#pragma once

#include <span>

#include "databases/schema.h"

namespace korvel::databases {

/// The tables of `KorvelConfig`, in the order in which they are made.
std::span<const TableDefinition> ConfigSchema();

}  // namespace korvel::databases
