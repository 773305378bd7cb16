#include <charconv>

#include "data/embedded/errors.h"
#include "data/embedded/parser_base.h"

namespace korvel::data::embedded {

const Token& TokenReader::Peek(std::size_t ahead) const {
  return at_ + ahead < tokens_.size() ? tokens_[at_ + ahead] : tokens_.back();
}

const Token& TokenReader::Next() {
  const Token& token = Peek();
  if (at_ + 1 < tokens_.size()) ++at_;
  return token;
}

bool TokenReader::IsWord(std::string_view word, std::size_t ahead) const {
  return Peek(ahead).kind == TokenKind::Word && SameName(Peek(ahead).text, word);
}

bool TokenReader::IsSymbol(std::string_view symbol, std::size_t ahead) const {
  return Peek(ahead).kind == TokenKind::Symbol && Peek(ahead).text == symbol;
}

bool TokenReader::TakeWord(std::string_view word) {
  const bool found = IsWord(word);
  if (found) Next();
  return found;
}

bool TokenReader::TakeWords(std::initializer_list<std::string_view> words) {
  std::size_t ahead = 0;
  for (const std::string_view word : words) {
    if (!IsWord(word, ahead++)) return false;
  }
  for (; ahead > 0; --ahead) Next();
  return true;
}

bool TokenReader::TakeSymbol(std::string_view symbol) {
  const bool found = IsSymbol(symbol);
  if (found) Next();
  return found;
}

void TokenReader::ExpectWord(std::string_view word) {
  if (!TakeWord(word)) Fail();
}

void TokenReader::ExpectSymbol(std::string_view symbol) {
  if (!TakeSymbol(symbol)) Fail();
}

bool TokenReader::IsName(std::size_t ahead) const {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::Quoted || (token.kind == TokenKind::Word && !IsReserved(token.text));
}

std::string TokenReader::ExpectName() {
  if (!IsName() || Peek().text.empty()) Fail();
  return Next().text;
}

ObjectName TokenReader::ExpectObjectName() {
  std::vector<std::string> parts{ExpectName()};
  while (TakeSymbol(".")) parts.push_back(IsSymbol(".") ? std::string() : ExpectName());
  if (parts.size() > 3) Fail();
  ObjectName name;
  name.name = std::move(parts.back());
  if (parts.size() > 1) name.owner = std::move(parts[parts.size() - 2]);
  if (parts.size() > 2) name.database = std::move(parts[0]);
  return name;
}

std::vector<std::string> TokenReader::ExpectNameList() {
  std::vector<std::string> names;
  ExpectSymbol("(");
  do {
    names.push_back(ExpectName());
    if (!TakeWord("asc") && IsWord("desc")) Fail();
  } while (TakeSymbol(","));
  ExpectSymbol(")");
  return names;
}

std::int64_t TokenReader::ExpectInteger() {
  const bool negative = TakeSymbol("-");
  std::int64_t number = 0;
  const std::string& text = Peek().text;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (Peek().kind != TokenKind::Number || error != std::errc() || end != text.data() + text.size()) Fail();
  Next();
  return negative ? -number : number;
}

ColumnType TokenReader::ExpectType(int defaultLength) {
  if (Peek().kind != TokenKind::Word && Peek().kind != TokenKind::Quoted) Fail();
  const std::string name = Next().text;
  constexpr std::int64_t kHighest = 1'000'000;
  std::int64_t numbers[2] = {-1, -1};
  if (TakeSymbol("(")) {
    numbers[0] = ExpectInteger();
    if (TakeSymbol(",")) numbers[1] = ExpectInteger();
    ExpectSymbol(")");
  }
  const bool sane = numbers[0] >= -1 && numbers[0] <= kHighest && numbers[1] >= -1 && numbers[1] <= kHighest;
  const auto type =
      sane ? TypeByName(name, static_cast<int>(numbers[0]), static_cast<int>(numbers[1])) : std::nullopt;
  if (!type)
    throw Failed(Code::NoType, "O tipo de dados " + name + " não é suportado, ou tem um tamanho inválido");
  const bool bare = type->base == Type::Varchar && numbers[0] < 0 && !SameName(name, "sysname");
  return bare ? Varchar(defaultLength) : *type;
}

void TokenReader::Fail() const {
  const std::string near = Peek().kind == TokenKind::End      ? "fim do texto"
                           : Peek().kind == TokenKind::String ? "'...'"
                                                              : Peek().text;
  throw SyntaxError(near, Excerpt(tokens_, 0));
}

std::string TokenReader::TextFrom(std::size_t offset) const {
  const std::size_t end = at_ == 0 ? offset : tokens_[at_ - 1].end;
  return std::string(text_.substr(offset, end - offset));
}

}  // namespace korvel::data::embedded
