#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "periods/source_servers.h"
#include "session/context.h"

/// Looking up a row by its code: `cPesqTabelas` and the ready-made searches of `PesquisaTabelas`.
namespace korvel::periods {

/// `Server`: the database `master` of TableSearch::location.
enum class SearchPlace { Company, Brevant, Lunder, Server };
enum class KeyType { Text, Number };

/// A column of the search window.
struct SearchColumn {
  std::string heading;
  std::string field;
};

/// Where a code is looked up. Its names are the system's own, never users' text.
struct TableSearch {
  std::string table;  // in messages, and under which the user's choices are kept
  SearchPlace place = SearchPlace::Brevant;
  std::string statement;  // `SQLStatement`, its first part, "select * From TabGrupoPro"
  std::string keyField = "Codigo";
  KeyType keyType = KeyType::Text;
  std::string nameField = "Descricao";  // what the label behind the box shows
  std::vector<SearchColumn> columns = {{"Código", "Codigo"}, {"Descrição", "Descricao"}};
  std::string filter = {};       // further condition, empty or beginning with " and "
  std::string dottedField = {};  // the key with its points, where the table has it: the box shows that
  SourceLocation location = {};
};

// The ready-made searches of `PesquisaTabelas`.
TableSearch Grupo_Produtos();
TableSearch Familia_Produtos();
TableSearch SubFamilia_Produtos();
TableSearch Situacoes_Brevant();
TableSearch Contas_Contabilidade();
TableSearch Clientes_Brevant();
/// The databases of a product ("Brevant", "Lunder") on a server.
TableSearch Empresas(std::string_view product, const SourceLocation& location);

/// A row: the values of the window's columns, in their order.
struct FoundRow {
  std::string key;  // as the box shows it
  std::string name;
  std::vector<std::string> values;
};

/// Whether a typed text asks for the search window: it holds "\" or "/".
bool AsksForWindow(std::string_view typed);
/// The text without those signs.
std::string WithoutSigns(std::string_view typed);

struct Lookup {
  std::optional<FoundRow> row;
  bool unknown = false;  // the table was read and has no such code
};

/// The row with that code; a blank one is not looked up. With `showMessage` an unknown code is told, and so is a
/// database that does not open. What the server refuses is shown in any case.
Lookup Pesq(const session::Context& context, const TableSearch& search, std::string_view code,
            bool showMessage);

/// What the search window asks for: the rows whose field of column `column` holds `typed`, at its start when `fromStart`
/// is set, ordered by that field; `most` of them at the most.
struct SearchRequest {
  std::string typed = {};
  std::size_t column = 0;
  bool fromStart = false;
  bool descending = false;
  std::int64_t most = 1;
};
struct SearchRows {
  std::vector<FoundRow> rows;
  std::int64_t count = 0;  // of all that match
};
/// Nothing when the database does not open or refuses, which is shown.
std::optional<SearchRows> SearchTable(const session::Context& context, const TableSearch& search,
                                      const SearchRequest& request);

/// The user's choices for the window of a table: "SearchChange" (search at each key), "SearchPrincipio".
struct SearchHabits {
  bool atEachKey = true;
  bool fromStart = false;
};
SearchHabits ReadSearchHabits(const toolkit::Settings& settings, std::string_view table);
/// Throws std::runtime_error when the store cannot be written.
void KeepSearchHabits(toolkit::Settings& settings, std::string_view table, const SearchHabits& habits);

}  // namespace korvel::periods
