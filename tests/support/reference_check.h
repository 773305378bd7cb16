#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvel::test {

/// Whether a file holds all of its period, so that its control totals are those of what stands in it.
enum class FileScope { Whole, Part };

/// What is wrong inside an audit file, one text a violation: a customer, supplier, product, account or tax
/// that a document, line or entry names and the master files lack; a document's transaction that the ledger
/// lacks; entries that do not balance; totals of a document that are not those of its lines; control totals
/// that are not the sums and counts of what the file holds, removed documents left out. Empty when all holds.
std::vector<std::string> BrokenReferences(std::string_view document, FileScope scope);

}  // namespace korvel::test
