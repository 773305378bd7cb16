#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "data/collated_map.h"
#include "data/connection.h"

/// Tables of a source read once a run. Of several rows with one key the first counts.
namespace korvel::billing {

using TextMap = data::CollatedMap<std::string>;

/// Runs a statement whose first column is a key and hands every row with a key to `keep`. Throws data::Error.
template <typename Keep>
void ForEachKey(data::Connection& connection, const std::string& statement, Keep&& keep) {
  for (data::Recordset rows = connection.Query(statement); !rows.Eof(); rows.MoveNext()) {
    if (!rows.IsNull(0)) keep(rows);
  }
}

template <typename Value>
void KeepFirst(data::CollatedMap<Value>& map, std::string_view key, Value value) {
  if (!map.Find(key)) map[key] = std::move(value);
}

/// Adds one column of a whole table, by another. Names are the system's own. Throws data::Error.
void ReadTexts(data::Connection& connection, std::string_view table, std::string_view key,
               std::string_view field, TextMap& map);

/// The text under that key, "" when there is none.
std::string TextOf(const TextMap& map, std::string_view key);

}  // namespace korvel::billing
