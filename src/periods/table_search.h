#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/context.h"

/// Looking up a row by its code: `cPesqTabelas` and the ready-made searches of `PesquisaTabelas`.
namespace korvel::periods {

enum class SearchPlace { Company, Brevant, Lunder, BrevantMaster, LunderMaster };
enum class KeyType { Text, Number };

/// A column of the search window.
struct SearchColumn {
  std::string heading;
  std::string field;
};

/// Where a code is looked up.
struct TableSearch {
  std::string table;  // in messages, and under which the user's choices are kept
  SearchPlace place = SearchPlace::Brevant;
  std::string statement;  // `SQLStatement`, its first part, "select * From TabGrupoPro"
  std::string keyField = "Codigo";
  KeyType keyType = KeyType::Text;
  std::string nameField = "Descricao";  // what the label behind the box shows
  std::vector<SearchColumn> columns = {{"Código", "Codigo"}, {"Descrição", "Descricao"}};
  std::string filter = {};  // further condition, empty or beginning with " and "
};

// The ready-made searches of `PesquisaTabelas`.
TableSearch Grupo_Produtos();
TableSearch Familia_Produtos();
TableSearch SubFamilia_Produtos();
TableSearch Situacoes_Brevant();
TableSearch Contas_Contabilidade();
TableSearch Clientes_Brevant();
/// The databases of a product's server.
TableSearch Empresas(SearchPlace side, std::string_view filter);

/// A row: the values of the window's columns, in their order.
struct FoundRow {
  std::string key;
  std::string name;
  std::vector<std::string> values;
};

/// Whether a typed text asks for the search window: it holds "\" or "/".
bool AsksForWindow(std::string_view typed);
/// The text without those signs.
std::string WithoutSigns(std::string_view typed);

/// The row with that code. Nothing without one, which is said when `showMessage` is set, and when its database does not
/// open or refuses, which is shown.
std::optional<FoundRow> Pesq(const session::Context& context, const TableSearch& search,
                             std::string_view code, bool showMessage);

/// The rows of the search window, at most `most`: those whose field of column `column` holds `typed`, at its start when
/// `fromStart` is set, ordered by that field. Nothing when the database does not open or refuses, which is shown.
struct SearchRows {
  std::vector<FoundRow> rows;
  std::int64_t count = 0;  // of all that match
};
std::optional<SearchRows> SearchTable(const session::Context& context, const TableSearch& search,
                                      std::size_t column, std::string_view typed, bool fromStart,
                                      std::size_t most);

/// The user's choices for the window of a table: "SearchChange" (search at each key), "SearchPrincipio".
struct SearchHabits {
  bool atEachKey = true;
  bool fromStart = false;
};
SearchHabits ReadSearchHabits(const toolkit::Settings& settings, std::string_view table);
void KeepSearchHabits(toolkit::Settings& settings, std::string_view table, const SearchHabits& habits);

}  // namespace korvel::periods
