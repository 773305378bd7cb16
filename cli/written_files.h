#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "toolkit/numbers.h"

namespace korvel::cli {

/// "Pasta: ..." checks: throws Refusal when the folder is blank or not there; `blankText` is the form's refusal.
void RequireFolder(const std::string& folder, const std::string& blankText);

/// One line a file: its path and size.
void ListFiles(std::ostream& out, const std::vector<std::string>& files, const toolkit::Marks& marks);

}  // namespace korvel::cli
