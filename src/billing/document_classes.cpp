#include "billing/document_classes.h"

#include <fmt/format.h>

#include <algorithm>

#include "data/sql_text.h"
#include "toolkit/text.h"

namespace korvel::billing {

std::string ClassFilter::On(std::string_view column) const {
  std::string filter = fmt::format(" and ({}='XXXX' ", column);
  for (const std::string& tipo : types_) filter += fmt::format(" or {}={}", column, data::Quoted(tipo));
  return filter + ") ";
}

ClassFilters ReadClassFilters(data::Connection& brevant) {
  ClassFilters filters;
  data::Recordset types = brevant.Query(
      "Select Codigo,TipoMovClassifica from TabTipoMov where (Modulo='CL' or Modulo='FC') and  "
      "TipoMovClassifica<>'' and TipoMovClassifica<>'@@@'  Order by TipoMovClassifica,NumRegisto");
  for (; !types.Eof(); types.MoveNext()) {
    const std::string_view classification = toolkit::TrimRight(types.Text(1));
    const auto found =
        std::find_if(kDocumentClasses.begin(), kDocumentClasses.end(),
                     [&](const DocumentClass& c) { return c.classification == classification; });
    if (found == kDocumentClasses.end()) continue;
    filters[static_cast<std::size_t>(found - kDocumentClasses.begin())].Add(types.Text(0));
  }
  return filters;
}

}  // namespace korvel::billing
