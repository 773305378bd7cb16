#include "security/right_rows.h"

#include <array>

#include "data/collated_map.h"

namespace korvel::security {

namespace {

constexpr std::array<std::string_view, 9> kColumns{"Utilizador", "Empresa", "Chave",   "Chave1", "Form",
                                                   "Ctrl",       "Caption", "CtrlCap", "Value"};

/// What a merge has to send.
struct Difference {
  std::vector<const RightRow*> missing;
  std::vector<const RightRow*> renamed;

  bool Empty() const { return missing.empty() && renamed.empty(); }
};

Difference Compare(std::span<const RightRow> present, std::span<const RightRow> wanted) {
  data::CollatedMap<const RightRow*> byKey;
  for (const RightRow& row : present) byKey[row.key] = &row;
  Difference difference;
  for (const RightRow& row : wanted) {
    const RightRow* const* there = byKey.Find(row.key);
    if (there == nullptr) {
      difference.missing.push_back(&row);
    } else if (!(*there)->form.empty() &&
               ((*there)->caption != row.caption || (*there)->buttonCaption != row.buttonCaption)) {
      difference.renamed.push_back(&row);
    }
  }
  return difference;
}

void Insert(data::Connection& config, const RightsOwner& owner, std::span<const RightRow* const> rows) {
  if (rows.empty()) return;
  const auto batch = config.OpenBatch("Acessos", kColumns);
  for (const RightRow* row : rows) {
    batch->Add(std::array<data::Parameter, kColumns.size()>{owner.user, owner.company, row->key, row->parent,
                                                            row->form, row->control, row->caption,
                                                            row->buttonCaption, row->allowed});
  }
  batch->Finish();
}

void Rename(data::Connection& config, const RightsOwner& owner, const RightRow& row) {
  config.Execute("update acessos set caption=?, ctrlcap=? where chave=? and utilizador=? and empresa=?",
                 {row.caption, row.buttonCaption, row.key, owner.user, owner.company});
}

void MergeOnce(data::Connection& config, const RightsOwner& owner, std::span<const RightRow> wanted) {
  const std::vector<RightRow> present = ReadRights(config, owner);
  const Difference difference = Compare(present, wanted);
  if (difference.Empty()) return;
  data::Transaction transaction(config);
  Insert(config, owner, difference.missing);
  for (const RightRow* row : difference.renamed) Rename(config, owner, *row);
  transaction.Commit();
}

}  // namespace

std::vector<RightRow> ReadRights(data::Connection& config, const RightsOwner& owner) {
  auto rows = config.Query("select * from acessos where utilizador=? and empresa=? order by form,chave",
                           {owner.user, owner.company});
  std::vector<RightRow> rights;
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto text = [&](std::string_view column) { return std::string(rows.Text(column)); };
    rights.push_back({text("chave"), text("chave1"), text("form"), text("ctrl"), text("caption"),
                      text("ctrlcap"), rows.Integer("value") == 1});
  }
  return rights;
}

void MergeRights(data::Connection& config, const RightsOwner& owner, std::span<const RightRow> wanted) {
  try {
    MergeOnce(config, owner, wanted);
  } catch (const data::Error& error) {
    if (error.Kind() != data::Failure::Integrity) throw;
    // The same user entered elsewhere at this moment, and the rows are there by now.
    MergeOnce(config, owner, wanted);
  }
}

}  // namespace korvel::security
