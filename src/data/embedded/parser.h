#pragma once

#include <string_view>

#include "data/embedded/tree.h"

namespace korvel::data::embedded {

/// Reads a batch whole. Throws Error (native 102) that quotes the beginning of a text that it does not understand.
Batch ParseBatch(std::string_view text);

/// Reads a procedure's text, which begins with CREATE PROCEDURE. Throws as ParseBatch does.
StoredProcedure ParseProcedure(std::string_view text);

/// A procedure's name as a caller gives it, with or without its owner. Throws as ParseBatch does.
ObjectName ParseObjectName(std::string_view text);

/// Reads one expression, as the catalogue keeps a column's default.
ExprPtr ParseExpression(std::string_view text);

}  // namespace korvel::data::embedded
