#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "billing/source_link.h"
#include "data/connection.h"

namespace korvel::billing {

/// What documents of one year and their rows in other tables are brought together by.
struct DocumentKey {
  std::string tipo;
  std::string numero;
};

/// Below 0, 0 or above 0, in the order of the server.
int Compare(std::string_view aTipo, std::string_view aNumero, std::string_view bTipo,
            std::string_view bNumero);

/// The rows of one statement, read step by step with the documents. Its first two columns are document type and
/// number, and it is ordered by them. Memory holds one row, whatever the size.
class KeyedStream {
 public:
  /// Sends nothing yet. The slot belongs to this stream while it lives.
  KeyedStream(SourceLink& source, Slot slot, std::string statement, std::vector<std::string> parameters);

  /// Goes to the first row at or behind this key; true when it bears the key. Keys normally go up; asking for one
  /// at or before the last sends the statement again. Throws data::Error, also when the server sorts otherwise than
  /// this system does: rows would be missed then.
  bool Seek(std::string_view tipo, std::string_view numero);
  /// True while the current row bears that key.
  bool At(std::string_view tipo, std::string_view numero) const;
  bool Eof() const { return rows_->Eof(); }
  const data::Recordset& Row() const { return *rows_; }
  void Next();
  /// Sends the statement, again if it was sent before, and stands on its first row.
  void Restart();

 private:
  void RequireOrder();

  SourceLink& source_;
  Slot slot_;
  std::string statement_;
  std::vector<std::string> parameters_;
  std::optional<data::Recordset> rows_;
  DocumentKey sought_;   // last key asked for
  DocumentKey current_;  // of the current row
};

}  // namespace korvel::billing
