#include "billing/text_lookups.h"

#include <fmt/format.h>

namespace korvel::billing {

void ReadTexts(data::Connection& connection, std::string_view table, std::string_view key,
               std::string_view field, TextMap& map) {
  const std::string statement =
      fmt::format("select {},{} from {} With (NoLock) order by NumRegisto", key, field, table);
  ForEachKey(connection, statement,
             [&](const data::Recordset& row) { KeepFirst(map, row.Text(0), std::string(row.Text(1))); });
}

std::string TextOf(const TextMap& map, std::string_view key) {
  const std::string* text = map.Find(key);
  return text ? *text : std::string();
}

}  // namespace korvel::billing
