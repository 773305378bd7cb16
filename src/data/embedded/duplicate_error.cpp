#include <fmt/format.h>

#include "data/embedded/schema_writer.h"

namespace korvel::data::embedded {

/// The words are "UNIQUE constraint failed: T.A, T.B" or "UNIQUE constraint failed: index 'T.Key:null'".
Error DuplicateError(const Catalogue& catalogue, std::string_view words) {
  for (const auto& [name, table] : catalogue.Objects()) {
    for (const KeyDefinition& key : table->keys) {
      std::string columns;
      for (const std::string& column : key.columns)
        columns += (columns.empty() ? "" : ", ") + table->name + "." + column;
      const bool hit =
          words.ends_with(": " + columns) || words.ends_with("'" + table->name + "." + key.name + ":null'");
      if (!key.unique || !hit) continue;
      const bool constraint = key.kind != KeyKind::Index;
      return Failed(constraint ? Code::DuplicateConstraint : Code::DuplicateIndex,
                    fmt::format("Violação {} '{}': não é possível inserir uma chave duplicada na tabela '{}'",
                                constraint ? "da restrição" : "do índice único", key.name, table->name));
    }
  }
  return Failed(Code::DuplicateIndex, "Não é possível inserir uma chave duplicada");
}

}  // namespace korvel::data::embedded
