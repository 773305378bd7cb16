#include "billing/document_reader.h"

#include <fmt/format.h>

#include "billing/document_rowset.h"
#include "data/collation.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

constexpr std::string_view kByNumber = " order by Tipo,Numero,NumRegisto";

/// In a customer period: the numbers of the customer's documents, so that a look at other documents under the same
/// number stays possible without reading all of them.
std::string NumbersOf(const BillingPeriod& period, const ClassFilter& filter) {
  if (toolkit::IsBlank(period.cliente)) return {};
  return fmt::format(" and Numero in (select Numero from MovCliente With (NoLock) Where NumRegisto>0 {}{})",
                     filter.On(), period.Documents());
}

std::string Headers(const BillingPeriod& period, const ClassFilter& filter) {
  return fmt::format(
      "Select {} from MovCliente With (NoLock) where NumRegisto>0 {}{} and Ano=? and Numero is not null{}"
      " order by Tipo,Numero,Data,NumRegisto",
      kHeaderColumns, filter.On(), period.Dates(), NumbersOf(period, filter));
}

std::string Lines(std::string_view table, const ReaderChoice& choice, const ClassFilter& filter,
                  const std::string& numbers) {
  return fmt::format("Select {},{} as DescLinha from {} With (NoLock) where NumRegisto>0 {}{}{}{}",
                     kLineColumns, LineDescription(choice.descLinhaDoc), table, filter.On(),
                     choice.period.Dates(), numbers, kByNumber);
}

std::string Charges(const ClassFilter& filter) {
  return fmt::format(
      "Select {} from ImpostosMovProduto With (NoLock) where CliFor='C' and Processa='S' {} and Ano=? "
      "and Identifica is not null and Produto is not null{}",
      kChargeColumns, filter.On(), kByNumber);
}

std::string FreeTexts(const BillingPeriod& period, const ClassFilter& filter) {
  return fmt::format("Select {} from MovItem With (NoLock) where NumRegisto>0 {}{}{}", kFreeTextColumns,
                     filter.On(), period.Dates(), kByNumber);
}

/// The link table from one of its sides: "0" names the document that refers, "1" the one referred to.
std::string Links(const ClassFilter& filter, char own, char other) {
  return fmt::format(
      "Select Tipo{0},Num{0},Tipo{1},Ano{1},Num{1} from Atribui With (NoLock) where NumRegisto>0 {2} "
      "and Ano{0}=? order by Tipo{0},Num{0},NumRegisto",
      own, other, filter.On(fmt::format("Tipo{}", own)));
}

/// All of the year: whether a number is missing does not depend on the dates.
std::string Removed(const ClassFilter& filter) {
  return fmt::format(
      "Select {} from LOG_MovTerceiro r With (NoLock) left outer join MovCliente m With (NoLock) on "
      "m.Tipo=r.Tipo and m.Numero=r.Numero and m.Ano=r.Ano where r.NumRegisto>0 {} and r.Ano=? "
      "order by r.Tipo,r.Numero,r.Data desc,r.NumRegisto",
      kRemovedColumns, filter.On("r.Tipo"));
}

NumberedDocuments::Name NameOf(const data::Recordset& row) {
  return {std::string(CodigoOf(row)), std::string(row.Text(0)), std::string(row.Text(1)),
          std::string(AnoOf(row)), std::string(DataOf(row))};
}

bool IsEightDigits(std::string_view numero) {
  return numero.size() == 8 && toolkit::SoDigitos(numero);
}

}  // namespace

std::vector<std::string> ReadYears(data::Connection& brevant, const BillingPeriod& period,
                                   const ClassFilter& filter) {
  std::vector<std::string> years;
  data::Recordset rows = brevant.Query(fmt::format(
      "Select Distinct Ano from MovCliente With (NoLock) Where NumRegisto>0 {}{} and Ano is not null "
      "order by Ano",
      filter.On(), period.Documents()));
  for (; !rows.Eof(); rows.MoveNext()) years.emplace_back(rows.Text(0));
  return years;
}

DocumentReader::DocumentReader(SourceLink& source, const ReaderChoice& choice, const ClassFilter& filter,
                               const std::string& ano)
    : choice_(choice),
      headers_(source, Slot::Headers, Headers(choice.period, filter), {ano}),
      lines_(source, Slot::Lines, Lines("MovProduto", choice, filter, NumbersOf(choice.period, filter)), {}),
      charges_(source, Slot::Charges, Charges(filter), {ano}),
      freeTexts_(source, Slot::FreeText, FreeTexts(choice.period, filter), {}),
      linksTo_(source, Slot::LinksTo, Links(filter, '0', '1'), {ano}),
      linksFrom_(source, Slot::LinksFrom, Links(filter, '1', '0'), {ano}),
      removed_(source, Slot::Removed, Removed(filter), {ano}),
      removedLines_(source, Slot::RemovedLines, Lines("LOG_MovProduto", choice, filter, {}), {}) {}

bool DocumentReader::IsOwn(std::string_view codigo) const {
  return toolkit::IsBlank(choice_.period.cliente) || data::SameText(codigo, choice_.period.cliente);
}

bool DocumentReader::Next(NumberedDocuments& documents) {
  if (!started_) headers_.Restart();
  started_ = true;
  if (headers_.Eof()) return false;
  documents.names.clear();
  documents.header = HeaderOf(headers_.Row());
  const DocumentKey key{documents.header.tipo, documents.header.numero};
  for (; headers_.At(key.tipo, key.numero); headers_.Next()) {
    const data::Recordset& row = headers_.Row();
    if (IsOwn(CodigoOf(row))) documents.names.push_back(NameOf(row));
    if (DataOf(row) > documents.header.data) documents.header = HeaderOf(row);
  }
  return true;
}

void DocumentReader::ReadContents(SourceDocument& document, bool links) {
  document.lines.clear();
  document.charges.clear();
  document.links.clear();
  document.freeText.reset();
  ReadLines(document);
  if (document.lines.empty()) {
    ReadFreeText(document);
  } else {
    ReadCharges(document);
  }
  if (!links) return;
  ReadLinks(linksTo_, document);
  ReadLinks(linksFrom_, document);
}

/// Lines belong to a document by type, number and date; the year does not count.
void DocumentReader::ReadLines(SourceDocument& document) {
  const DocumentHeader& header = document.header;
  KeyedStream& lines = header.removed ? removedLines_ : lines_;
  if (!lines.Seek(header.tipo, header.numero)) return;
  for (; lines.At(header.tipo, header.numero); lines.Next()) {
    if (data::SameText(DataOf(lines.Row()), header.data)) document.lines.push_back(LineOf(lines.Row()));
  }
}

void DocumentReader::ReadCharges(SourceDocument& document) {
  const DocumentHeader& header = document.header;
  if (!charges_.Seek(header.tipo, header.numero)) return;
  for (; charges_.At(header.tipo, header.numero); charges_.Next())
    document.charges.push_back(ChargeOf(charges_.Row()));
}

void DocumentReader::ReadFreeText(SourceDocument& document) {
  const DocumentHeader& header = document.header;
  if (!freeTexts_.Seek(header.tipo, header.numero)) return;
  for (; freeTexts_.At(header.tipo, header.numero) && !document.freeText; freeTexts_.Next()) {
    if (data::SameText(DataOf(freeTexts_.Row()), header.data))
      document.freeText = FreeTextOf(freeTexts_.Row());
  }
}

void DocumentReader::ReadLinks(KeyedStream& stream, SourceDocument& document) {
  const DocumentHeader& header = document.header;
  if (!stream.Seek(header.tipo, header.numero)) return;
  for (; stream.At(header.tipo, header.numero); stream.Next()) {
    const data::Recordset& row = stream.Row();
    document.links.push_back({std::string(row.Text(2)), std::string(row.Text(3)), std::string(row.Text(4))});
  }
}

bool DocumentReader::ForEachRemoved(std::string_view tipo, const NumberGap& gap, const RemovedSink& sink) {
  const std::string last = DocumentNumberText(gap.last);
  removed_.Seek(tipo, DocumentNumberText(gap.first));
  while (!removed_.Eof()) {
    const DocumentKey key{std::string(removed_.Row().Text(0)), std::string(removed_.Row().Text(1))};
    if (Compare(key.tipo, key.numero, tipo, last) > 0) return true;
    std::optional<DocumentHeader> header = ReadRemoved(key);
    if (header && IsEightDigits(key.numero) && !sink(*header)) return false;
  }
  return true;
}

/// The latest removed document of the period under that number, unless a document bears it; goes behind its rows.
std::optional<DocumentHeader> DocumentReader::ReadRemoved(const DocumentKey& key) {
  const periods::PeriodKey& period = choice_.period.key;
  std::optional<DocumentHeader> latest;
  bool taken = false;
  for (; removed_.At(key.tipo, key.numero); removed_.Next()) {
    const data::Recordset& row = removed_.Row();
    taken = taken || IsPresent(row) || !IsOwn(CodigoOf(row));
    const bool inPeriod = DataOf(row) >= period.startDate && DataOf(row) <= period.endDate;
    if (!latest && inPeriod) latest = RemovedHeaderOf(row, choice_.marks);
  }
  return taken ? std::nullopt : latest;
}

}  // namespace korvel::billing
