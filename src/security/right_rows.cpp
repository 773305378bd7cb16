#include "security/right_rows.h"

#include <fmt/format.h>

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

/// The rows by form and key; `hint` follows the table's name.
std::vector<RightRow> Read(data::Connection& config, const RightsOwner& owner, std::string_view hint) {
  auto rows = config.Query(
      fmt::format("select * from acessos{} where utilizador=? and empresa=? order by form,chave", hint),
      {owner.user, owner.company});
  std::vector<RightRow> rights;
  for (; !rows.Eof(); rows.MoveNext()) {
    const auto text = [&](std::string_view column) { return std::string(rows.Text(column)); };
    rights.push_back({text("chave"), text("chave1"), text("form"), text("ctrl"), text("caption"),
                      text("ctrlcap"), rows.Integer("value") == 1});
  }
  return rights;
}

}  // namespace

std::vector<RightRow> ReadRights(data::Connection& config, const RightsOwner& owner) {
  return Read(config, owner, "");
}

void MergeRights(data::Connection& config, const RightsOwner& owner, std::span<const RightRow> wanted) {
  if (Compare(ReadRights(config, owner), wanted).Empty()) return;
  data::Transaction transaction(config);
  // Read again under a lock: the same user may be entering from another place at this moment.
  const Difference difference = Compare(Read(config, owner, " With (UpdLock, HoldLock)"), wanted);
  Insert(config, owner, difference.missing);
  for (const RightRow* row : difference.renamed) Rename(config, owner, *row);
  transaction.Commit();
}

}  // namespace korvel::security
