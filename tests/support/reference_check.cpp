#include "support/reference_check.h"

#include <fmt/format.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <set>

#include "data/currency.h"

namespace korvel::test {

namespace {

using data::Currency;

/// An element of the tree, or none.
class Node {
 public:
  explicit Node(const xmlNode* node) : node_(node) {}

  std::string_view Name() const { return reinterpret_cast<const char*>(node_->name); }
  explicit operator bool() const { return node_ != nullptr; }

  template <typename Visit>
  void ForEach(std::string_view name, Visit&& visit) const {
    for (const xmlNode* child = node_ ? node_->children : nullptr; child; child = child->next) {
      if (child->type == XML_ELEMENT_NODE && Node(child).Name() == name) visit(Node(child));
    }
  }
  Node Child(std::string_view name) const {
    const xmlNode* found = nullptr;
    ForEach(name, [&](Node child) { found = found ? found : child.node_; });
    return Node(found);
  }
  bool Has(std::string_view name) const { return static_cast<bool>(Child(name)); }
  /// Text of a child, "" when there is none.
  std::string Text(std::string_view name) const {
    const Node child = Child(name);
    if (!child) return {};
    const std::unique_ptr<xmlChar, void (*)(void*)> text(xmlNodeGetContent(child.node_),
                                                         [](void* content) { xmlFree(content); });
    return reinterpret_cast<const char*>(text.get());
  }
  Currency Amount(std::string_view name) const { return Currency::FromText(Text(name)).value_or(Currency()); }

 private:
  const xmlNode* node_;
};

struct Sides {
  Currency debit, credit;
  void Add(Node line) {
    debit += line.Amount("DebitAmount");
    credit += line.Amount("CreditAmount");
  }
};

class Check {
 public:
  Check(Node file, FileScope scope) : file_(file), scope_(scope) {}

  std::vector<std::string> Run() {
    ReadMasterFiles();
    CheckLedger(file_.Child("GeneralLedgerEntries"));
    CheckDocuments(file_.Child("SourceDocuments").Child("SalesInvoices"));
    return std::move(violations_);
  }

 private:
  using Keys = std::set<std::string, std::less<>>;

  void ReadMasterFiles() {
    const Node master = file_.Child("MasterFiles");
    const auto read = [&](std::string_view element, std::string_view key, Keys& keys) {
      master.ForEach(element, [&](Node row) { keys.insert(row.Text(key)); });
    };
    read("GeneralLedger", "AccountID", accounts_);
    read("Customer", "CustomerID", customers_);
    read("Supplier", "SupplierID", suppliers_);
    read("Product", "ProductCode", products_);
    master.Child("TaxTable").ForEach("TaxTableEntry", [&](Node row) { taxes_.insert(TaxKey(row)); });
    for (const char* element : {"Customer", "Supplier"}) {
      master.ForEach(element, [&](Node row) {
        if (row.Text("AccountID") == "Desconhecido") return;
        Require(accounts_, row.Text("AccountID"), "account", row.Text("CompanyName"));
      });
    }
  }

  void CheckLedger(Node ledger) {
    if (!ledger) return;
    Sides sums;
    std::int64_t lines = 0;
    ledger.ForEach("Journal", [&](Node journal) {
      journal.ForEach("Transaction", [&](Node transaction) { CheckTransaction(transaction, sums, lines); });
    });
    if (sums.debit != sums.credit) Report("the ledger does not balance");
    CheckControl(ledger, lines, sums);
  }

  void CheckTransaction(Node transaction, Sides& sums, std::int64_t& lines) {
    const std::string name = transaction.Text("TransactionID");
    transactions_.insert(name);
    RequireIfNamed(customers_, transaction.Text("CustomerID"), "customer", name);
    RequireIfNamed(suppliers_, transaction.Text("SupplierID"), "supplier", name);
    Sides own;
    transaction.ForEach("Line", [&](Node line) {
      Require(accounts_, line.Text("AccountID"), "account", name);
      own.Add(line);
      ++lines;
    });
    if (own.debit != own.credit) Report(fmt::format("{} does not balance", name));
    sums.debit += own.debit;
    sums.credit += own.credit;
  }

  void CheckDocuments(Node documents) {
    if (!documents) return;
    Sides sums;
    std::int64_t count = 0;
    documents.ForEach("Invoice", [&](Node invoice) {
      const Sides own = CheckInvoice(invoice);
      if (invoice.Text("InvoiceStatus") == "A") return;
      sums.debit += own.debit;
      sums.credit += own.credit;
      ++count;
    });
    CheckControl(documents, count, sums);
  }

  Sides CheckInvoice(Node invoice) {
    const std::string name = invoice.Text("InvoiceNo");
    Require(customers_, invoice.Text("CustomerID"), "customer", name);
    if (invoice.Has("TransactionID"))
      Require(transactions_, invoice.Text("TransactionID"), "transaction", name);
    Sides own;
    invoice.ForEach("Line", [&](Node line) {
      Require(products_, line.Text("ProductCode"), "product", name);
      Require(taxes_, TaxKey(line.Child("Tax")), "tax", name);
      own.Add(line);
    });
    const Node totals = invoice.Child("DocumentTotals");
    const Currency net = totals.Amount("NetTotal");
    if (own.debit + own.credit != net) Report(fmt::format("{}: NetTotal is not that of its lines", name));
    if (net + totals.Amount("TaxPayable") != totals.Amount("GrossTotal"))
      Report(fmt::format("{}: GrossTotal is not NetTotal and TaxPayable", name));
    return own;
  }

  void CheckControl(Node section, std::int64_t entries, const Sides& sums) {
    if (scope_ == FileScope::Part) return;
    Compare(section, "NumberOfEntries", Currency::FromWhole(entries));
    Compare(section, "TotalDebit", sums.debit);
    Compare(section, "TotalCredit", sums.credit);
  }

  void Compare(Node section, std::string_view element, Currency held) {
    if (section.Amount(element) == held) return;
    Report(fmt::format("{} {} is {}, the file holds {}", section.Name(), element, section.Text(element),
                       held.ToText()));
  }

  /// Percentages are told apart by their worth: 23 and 23.00 are one.
  static std::string TaxKey(Node tax) {
    return fmt::format("{} {} {} {}", tax.Text("TaxType"), tax.Text("TaxCountryRegion"), tax.Text("TaxCode"),
                       tax.Amount("TaxPercentage").ToText());
  }

  void RequireIfNamed(const Keys& keys, const std::string& key, std::string_view kind,
                      std::string_view where) {
    if (!key.empty()) Require(keys, key, kind, where);
  }
  void Require(const Keys& keys, const std::string& key, std::string_view kind, std::string_view where) {
    if (!keys.contains(key)) Report(fmt::format("{}: no {} \"{}\"", where, kind, key));
  }
  void Report(std::string violation) { violations_.push_back(std::move(violation)); }

  Node file_;
  FileScope scope_;
  Keys accounts_, customers_, suppliers_, products_, taxes_, transactions_;
  std::vector<std::string> violations_;
};

}  // namespace

std::vector<std::string> BrokenReferences(std::string_view document, FileScope scope) {
  const std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> tree(
      xmlReadMemory(document.data(), static_cast<int>(document.size()), "document", nullptr,
                    XML_PARSE_NOERROR),
      xmlFreeDoc);
  if (!tree) return {"not well-formed"};
  return Check(Node(xmlDocGetRootElement(tree.get())), scope).Run();
}

}  // namespace korvel::test
