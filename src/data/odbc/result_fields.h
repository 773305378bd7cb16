#pragma once

#include <vector>

#include "data/odbc/statement.h"
#include "data/value.h"

namespace korvel::data::odbc {

/// The columns of a statement's current result, in order; empty when it brings no rows.
std::vector<Field> DescribeResult(const Statement& statement);

}  // namespace korvel::data::odbc
