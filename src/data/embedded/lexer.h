#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvel::data::embedded {

enum class TokenKind { Word, Quoted, Variable, Number, String, Parameter, Symbol, End };

/// A piece of a statement. `text` is the word as written, a quoted name or text without its quotes and with
/// doubled quotes made one, or the symbol ("<=" is one, "!=" reads as "<>").
struct Token {
  TokenKind kind;
  std::string text;
  std::size_t start;  // offset in the batch
  std::size_t end;
};

/// Splits a batch; comments and blanks go. The last token is of kind End.
/// Throws Error (native 102) on a character that no token begins with and on quotes or comments left open.
std::vector<Token> Tokenize(std::string_view batch);

/// The beginning of a batch for an error text: names and symbols as written, texts and numbers masked, so that
/// no value reaches a message.
std::string Excerpt(const std::vector<Token>& tokens, std::size_t from);

/// Words that are names only between brackets.
bool IsReserved(std::string_view word);

}  // namespace korvel::data::embedded
