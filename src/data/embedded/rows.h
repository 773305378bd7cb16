#pragma once

#include <string>
#include <vector>

#include "data/embedded/convert.h"

namespace korvel::data::embedded {

/// Rows that the server makes itself: system tables, results of procedures. Values are as stored (see ColumnType).
struct RowTable {
  struct Heading {
    std::string name;
    ColumnType type;
  };
  std::vector<Heading> headings;
  std::vector<std::vector<OwnedStored>> rows;
};

}  // namespace korvel::data::embedded
