#include "billing/keyed_stream.h"

#include "data/collation.h"

namespace korvel::billing {
namespace {

int CompareText(std::string_view a, std::string_view b) {
  return a == b ? 0 : data::Collate(a, b);
}

}  // namespace

int Compare(std::string_view aTipo, std::string_view aNumero, std::string_view bTipo,
            std::string_view bNumero) {
  const int byTipo = CompareText(aTipo, bTipo);
  return byTipo != 0 ? byTipo : CompareText(aNumero, bNumero);
}

KeyedStream::KeyedStream(SourceLink& source, Slot slot, std::string statement,
                         std::vector<std::string> parameters)
    : source_(source), slot_(slot), statement_(std::move(statement)), parameters_(std::move(parameters)) {}

void KeyedStream::Restart() {
  rows_.reset();
  const std::vector<data::Parameter> bound(parameters_.begin(), parameters_.end());
  rows_.emplace(source_.At(slot_).Query(statement_, bound));
  current_ = {};
  RequireOrder();
}

bool KeyedStream::Seek(std::string_view tipo, std::string_view numero) {
  if (!rows_ || Compare(tipo, numero, sought_.tipo, sought_.numero) <= 0) Restart();
  sought_.tipo = tipo;
  sought_.numero = numero;
  while (!Eof() && Compare(rows_->Text(0), rows_->Text(1), tipo, numero) < 0) Next();
  return At(tipo, numero);
}

bool KeyedStream::At(std::string_view tipo, std::string_view numero) const {
  return !Eof() && Compare(rows_->Text(0), rows_->Text(1), tipo, numero) == 0;
}

void KeyedStream::Next() {
  rows_->MoveNext();
  RequireOrder();
}

void KeyedStream::RequireOrder() {
  if (Eof()) return;
  const int order = Compare(current_.tipo, current_.numero, rows_->Text(0), rows_->Text(1));
  if (order > 0)
    throw data::Error(
        data::Failure::Conversion,
        "A base de dados do Brevant ordena os textos de forma diferente da esperada (collation)");
  if (order == 0) return;
  current_.tipo = rows_->Text(0);
  current_.numero = rows_->Text(1);
}

}  // namespace korvel::billing
