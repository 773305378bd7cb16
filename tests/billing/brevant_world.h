#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "billing/billing_period.h"
#include "billing/documents.h"
#include "support/scripted_world.h"

namespace korvel::test {

/// A row to be inserted: columns with their values. "NULL" is a NULL.
using Record = std::vector<std::pair<std::string_view, std::string>>;

/// The row "Codigo=P1;Descricao=Porca", given values going before those.
Record With(std::string_view defaults, const Record& values);

/// A server with a company whose billing and accounting products' databases are made, and a billing period of 2011.
/// There are the document types FT1 (FT), NC1 (NC, refers to others), VD1 (VD, pays) and TD1 (TD), the tax codes 2 (23 %)
/// and 0 (exempt), staged for the period, the customer C1 with the tax number 123456789, staged too, and nothing else.
class BrevantWorld : public testing::Test {
 protected:
  BrevantWorld();

  void Brevant(std::string_view script) { server.Run("BrevantDemo", script); }
  void Company(std::string_view script) { server.Run("Korvel0001", script); }
  std::vector<std::string> Staged(std::string_view columns) {
    return server.Rows("Korvel0001",
                       "select " + std::string(columns) + " from TabSourceDocumentsGEST order by NumRegisto");
  }
  /// The kind of the period, which is the only one then.
  void SetBasis(std::string_view basis);
  void AddPeriod(const billing::BillingPeriod& added, std::string_view basis = "F");
  void IncludeRemoved();

  /// Inserts a row, given values going before the defaults of its kind.
  void AddDocument(const Record& values);  // FT1 2011/00000001 of C1, 2011-03-05, worth 100 and 23 of tax
  void AddRemoved(const Record& values);   // the same in the log of removed documents
  void AddLine(const Record& values);      // a line of it, product P1, quantity 1
  void AddRemovedLine(const Record& values);
  void AddCustomer(const Record& values);  // C1 with the tax number 501234567 and nothing missing
  void AddProduct(const Record& values);   // the article P1 of group G
  void AddTax(const Record& values);       // the sale code 2, 23 %
  void Add(std::string_view table, std::string_view defaults, const Record& values);

  /// Takes away the master data that the world starts with, staged rows included.
  void ClearMasters();
  /// The result of that work, of whose statements one fails as when the server has gone, the first being 0.
  bool Losing(std::size_t statement, const std::function<bool()>& work);

  bool Run(billing::Caller caller = billing::Caller::Command) {
    return billing::CalcularDocumentos(server.Context(), period, caller);
  }
  std::string LastText() const { return server.dialogs.LastText(); }

  TestServer server;
  billing::BillingPeriod period{{"2011", "2011-01-01", "2011-12-31"}, ""};

 private:
  std::unique_ptr<data::Connection> brevant_;  // of Add, kept because opening takes longer than inserting
};

}  // namespace korvel::test
