#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>
#include <span>

#include "auditfile/documents_section.h"
#include "data/sql_text.h"
#include "staged_company.h"
#include "support/memory_sink.h"
#include "toolkit/text.h"

// The documents of random small tables against a plain reading with a statement for each document's lines.
namespace korvel::auditfile {
namespace {

using test::StagedCompany;

/// A staged text; nullptr: NULL.
using Text = const char*;

/// What a column of a random row is drawn from. Texts that the server takes for equal come in several spellings.
struct Choices {
  std::string_view column;
  std::vector<Text> regular;  // as extraction stages
  std::vector<Text> awkward;  // as hands may have left it
};

const std::vector<Choices>& Columns() {
  static const std::vector<Choices> columns{
      {"SalesInvoices", {""}, {"", "s", "S ", " s", nullptr}},
      {"Invoice", {""}, {"", "", "i", nullptr}},
      {"InvoiceNo",
       {"FT 1", "ft 1 ", " FT 1", "FT 2", "NC 1"},
       {"FT 1", "ft 1 ", " FT 1", "FT 2", "", nullptr}},
      {"InvoiceDate", {"2010-01-02", "2010-02-02"}, {"2010-01-02", "2010-02-02", nullptr}},
      {"InvoiceType", {"FT", "NC"}, {"FT", "nc"}},
      {"ShipTo", {"1", "2"}, {"1", "2", ""}},
      {"LineNumber", {"1", "2", "10"}, {"1", "2", "10", "00001", "0", "x", "", "\t", nullptr}},
      {"Period", {"1"}, {"1", "1", "1", "01", "01", "2", "2", "2", "3", "3", nullptr}},
  };
  return columns;
}

class RandomTable {
 public:
  RandomTable(StagedCompany& company, unsigned seed) : company_(company), random_(seed) {
    // Few columns at a time, so that each kind of disorder stands alone in some table.
    for (std::size_t i = 0; i < Columns().size(); ++i) awkward_.push_back(Draw(0, 3) == 0);
    std::string script = "delete from TabSourceDocumentsGEST\nGO\nbegin tran\nGO\n";
    const int rows = Draw(1, 14);
    for (int i = 0; i < rows; ++i) script += Row(i);
    company_.Script(script + "commit");
  }

  int Draw(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }

 private:
  /// Customer and product name the row, so that the file tells which row gave what.
  std::string Row(int number) {
    std::string columns = "FiscalYear,StartDate,EndDate,CustomerID,ProductCode";
    std::string values = fmt::format("'2010','2010-01-01','2010-12-31','{0}','{0}'", number);
    for (std::size_t i = 0; i < Columns().size(); ++i) {
      const Choices& choices = Columns()[i];
      const auto& texts = awkward_[i] ? choices.awkward : choices.regular;
      const Text text = texts[static_cast<std::size_t>(Draw(0, static_cast<int>(texts.size()) - 1))];
      columns.append(",").append(choices.column);
      values.append(",").append(text ? data::Quoted(text) : "NULL");
    }
    return "Insert into TabSourceDocumentsGEST (" + columns + ") values (" + values + ")\nGO\n";
  }

  StagedCompany& company_;
  std::mt19937 random_;
  std::vector<bool> awkward_;  // by column
};

/// "D3 0 4 D7 7": the row that drives each document and the rows of its lines.
std::string OutlineOf(std::string_view file) {
  std::string outline;
  for (std::size_t at = file.find('<'); at != std::string_view::npos; at = file.find('<', at + 1)) {
    for (const auto& [tag, sign] :
         {std::pair<std::string_view, std::string_view>{"<CustomerID>", " D"}, {"<ProductCode>", " "}}) {
      if (!file.substr(at).starts_with(tag)) continue;
      outline.append(sign).append(file.substr(at + tag.size(), file.find('<', at + 1) - at - tag.size()));
    }
  }
  return outline;
}

struct PlainRow {
  std::string sales, number, line, name;
};

std::vector<PlainRow> ReadPlain(data::Connection& company, const std::string& statement,
                                std::initializer_list<data::Parameter> values = {}) {
  std::vector<PlainRow> read;
  for (data::Recordset rows = company.Query(statement, values); !rows.Eof(); rows.MoveNext()) {
    read.push_back({std::string(rows.Text("SalesInvoices")), std::string(rows.Text("InvoiceNo")),
                    std::string(rows.Text("LineNumber")), std::string(rows.Text("CustomerID"))});
  }
  return read;
}

/// Every row in order; the first of a number makes a document, whose lines a second statement fetches.
std::string PlainOutline(const SectionContext& context, std::string_view monthFilter, std::string key) {
  const std::string select =
      "Select * from TabSourceDocumentsGEST where NumRegisto>0 " + context.PeriodFilter();
  std::string outline;
  const auto rows =
      ReadPlain(context.company,
                select + std::string(monthFilter) +
                    " order by SalesInvoices,Invoice,InvoiceNo,InvoiceDate,InvoiceType,ShipTo,NumRegisto");
  for (const PlainRow& row : rows) {
    const std::string number = toolkit::Upper(toolkit::Trim(row.number));
    if (number == key) continue;
    key = number;
    outline += " D" + row.name;
    if (!(toolkit::NumericPrefix(row.line) > data::Currency())) continue;
    const auto lines = ReadPlain(
        context.company, select + " and SalesInvoices=? and InvoiceNo=? order by LineNumber,NumRegisto",
        {row.sales, row.number});
    for (const PlainRow& line : lines) outline += " " + line.name;
  }
  return outline;
}

std::string WrittenOutline(const SectionContext& context, const DocumentSelection& selection,
                           const RunningKey& key) {
  test::MemorySink sink;
  XmlWriter xml(sink);
  WriteDocuments(xml, context, selection, key);
  sink.Finish();
  return OutlineOf(sink.bytes);
}

TEST(DocumentsOrder, IsThatOfAStatementForEachDocument) {
  StagedCompany company;
  const auto connection = company.Open(company.session.gBaseDados);
  int scattered = 0;
  for (unsigned seed = 0; seed < 200; ++seed) {
    RandomTable table(company, seed);
    ExportOptions options = company.Options(periods::Basis::Billing);
    options.chkPorMeses = seed % 2 == 1;
    const SectionContext context{
        *connection, company.progress, options, company.period, "F", {2, company.session.Marks()},
        "",          "2010-12-31"};
    const std::string_view filters[] = {" and convert(int,period)= 1",
                                        " and convert(int,period)>= 1 and convert(int,period)<= 2"};
    const std::string_view filter = options.chkPorMeses ? filters[table.Draw(0, 1)] : std::string_view();
    const std::string_view last = table.Draw(0, 3) == 0 ? " ft 1" : "none";
    RunningKey key;
    key.Changes(last);
    const bool apart = DocumentsAreScattered(context);
    scattered += apart ? 1 : 0;
    const std::string plain = PlainOutline(context, filter, toolkit::Upper(toolkit::Trim(last)));
    EXPECT_EQ(WrittenOutline(context, {filter, apart}, key), plain) << seed;
    EXPECT_EQ(WrittenOutline(context, {filter, true}, key), plain) << seed;
  }
  EXPECT_GT(scattered, 20);
  EXPECT_LT(scattered, 130);
}

}  // namespace
}  // namespace korvel::auditfile
