#pragma once

#include <string>
#include <string_view>

#include "billing/source_document.h"
#include "data/recordset.h"
#include "toolkit/dates.h"

/// The columns that the extraction reads of documents and their rows, and how a row becomes a value. All begin with
/// document type and number, as KeyedStream wants them.
namespace korvel::billing {

/// Columns of `MovCliente`.
extern const std::string_view kHeaderColumns;
/// The same of `LOG_MovTerceiro` named r, and `Presente`: not NULL when `MovCliente` named m bears the number.
extern const std::string_view kRemovedColumns;
/// Columns of `MovProduto` and `LOG_MovProduto` but the line's description.
extern const std::string_view kLineColumns;
extern const std::string_view kChargeColumns;
extern const std::string_view kFreeTextColumns;

/// The expression of a line's description by `SourceDocuments_DescLinhaDoc`: "ObsLinha" the line's remarks, anything
/// else the product's description.
std::string_view LineDescription(std::string_view descLinhaDoc);

std::string_view CodigoOf(const data::Recordset& header);
std::string_view DataOf(const data::Recordset& row);  // of headers, lines and free texts
std::string_view AnoOf(const data::Recordset& header);
bool IsPresent(const data::Recordset& removed);

DocumentHeader HeaderOf(const data::Recordset& row);
/// `marks` are the user's: the log's `DataSys` is text and may have been written in the user's form.
DocumentHeader RemovedHeaderOf(const data::Recordset& row, const toolkit::DateMarks& marks);
DocumentLine LineOf(const data::Recordset& row);
ExtraCharge ChargeOf(const data::Recordset& row);
FreeTextItem FreeTextOf(const data::Recordset& row);

/// A moment as text, neutral or in the user's form, as YYYY-MM-DDTHH:MM:SS; "" for a text that is none.
std::string SystemEntryOf(std::string_view text, const toolkit::DateMarks& marks);

}  // namespace korvel::billing
