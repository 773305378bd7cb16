#include "data/embedded/lexer.h"

#include <algorithm>
#include <array>

#include "data/embedded/errors.h"
#include "data/embedded/types.h"

namespace korvel::data::embedded {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '#' ||
         static_cast<signed char>(c) < 0;
}

bool IsNamePart(char c) {
  return IsNameStart(c) || IsDigit(c) || c == '$' || c == '@';
}

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

class Lexer {
 public:
  explicit Lexer(std::string_view batch) : batch_(batch) {}

  std::vector<Token> Run() {
    while (SkipBlanks()) Next();
    Add(TokenKind::End, "", at_);
    return std::move(tokens_);
  }

 private:
  char Peek(std::size_t ahead = 0) const { return at_ + ahead < batch_.size() ? batch_[at_ + ahead] : '\0'; }

  void Add(TokenKind kind, std::string text, std::size_t start) {
    tokens_.push_back({kind, std::move(text), start, at_});
  }

  /// False at the end of the batch.
  bool SkipBlanks() {
    while (at_ < batch_.size()) {
      if (IsBlank(batch_[at_])) {
        ++at_;
      } else if (Peek() == '-' && Peek(1) == '-') {
        at_ = std::min(batch_.find('\n', at_), batch_.size());
      } else if (Peek() == '/' && Peek(1) == '*') {
        SkipComment();
      } else {
        return true;
      }
    }
    return false;
  }

  /// Comments nest, as they do on the server.
  void SkipComment() {
    int depth = 0;
    do {
      if (at_ >= batch_.size()) throw SyntaxError("/*", Excerpt(tokens_, 0));
      const bool opens = Peek() == '/' && Peek(1) == '*';
      const bool closes = Peek() == '*' && Peek(1) == '/';
      depth += opens ? 1 : closes ? -1 : 0;
      at_ += opens || closes ? 2 : 1;
    } while (depth > 0);
  }

  void Next() {
    const char c = Peek();
    if ((c == 'N' || c == 'n') && Peek(1) == '\'') ++at_;
    if (Peek() == '\'') return Quoted(TokenKind::String, '\'');
    if (c == '"') return Quoted(TokenKind::Quoted, '"');
    if (c == '[') return Quoted(TokenKind::Quoted, ']');
    if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return Number();
    if (c == '@') return Name(TokenKind::Variable);
    if (IsNameStart(c)) return Name(TokenKind::Word);
    Symbol();
  }

  void Quoted(TokenKind kind, char close) {
    const std::size_t start = at_++;
    std::string text;
    while (true) {
      const std::size_t stop = batch_.find(close, at_);
      if (stop == std::string_view::npos) throw SyntaxError(batch_.substr(start, 1), Excerpt(tokens_, 0));
      text += batch_.substr(at_, stop - at_);
      at_ = stop + 1;
      if (Peek() != close) break;
      text += close;
      ++at_;
    }
    Add(kind, std::move(text), start);
  }

  void Digits() {
    while (IsDigit(Peek())) ++at_;
  }

  void Number() {
    const std::size_t start = at_;
    Digits();
    if (Peek() == '.') ++at_;
    Digits();
    const std::size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 1 : 0;
    if ((Peek() == 'e' || Peek() == 'E') && IsDigit(Peek(1 + sign))) {
      at_ += 1 + sign;
      Digits();
    }
    Add(TokenKind::Number, std::string(batch_.substr(start, at_ - start)), start);
  }

  void Name(TokenKind kind) {
    const std::size_t start = at_++;
    while (IsNamePart(Peek())) ++at_;
    Add(kind, std::string(batch_.substr(start, at_ - start)), start);
  }

  void Symbol() {
    static constexpr std::array<std::string_view, 4> kPairs = {"<=", ">=", "<>", "!="};
    static constexpr std::string_view kSingles = "(),.;+-*/%=<>?";
    const std::size_t start = at_;
    const std::string_view pair = batch_.substr(at_, 2);
    if (std::find(kPairs.begin(), kPairs.end(), pair) != kPairs.end()) {
      at_ += 2;
      return Add(TokenKind::Symbol, pair == "!=" ? "<>" : std::string(pair), start);
    }
    if (kSingles.find(Peek()) == std::string_view::npos) {
      throw SyntaxError(Peek() < ' ' ? std::string_view("\\0") : batch_.substr(at_, 1), Excerpt(tokens_, 0));
    }
    ++at_;
    Add(batch_[start] == '?' ? TokenKind::Parameter : TokenKind::Symbol, std::string(batch_.substr(start, 1)),
        start);
  }

  std::string_view batch_;
  std::size_t at_ = 0;
  std::vector<Token> tokens_;
};

constexpr std::string_view kReserved[] = {"add",          "all",
                                          "alter",        "and",
                                          "any",          "as",
                                          "asc",          "authorization",
                                          "backup",       "begin",
                                          "between",      "break",
                                          "browse",       "by",
                                          "cascade",      "case",
                                          "check",        "checkpoint",
                                          "close",        "clustered",
                                          "coalesce",     "collate",
                                          "column",       "commit",
                                          "constraint",   "contains",
                                          "continue",     "convert",
                                          "create",       "cross",
                                          "current",      "cursor",
                                          "database",     "dbcc",
                                          "deallocate",   "declare",
                                          "default",      "delete",
                                          "deny",         "desc",
                                          "disk",         "distinct",
                                          "distributed",  "drop",
                                          "dump",         "else",
                                          "end",          "errlvl",
                                          "escape",       "except",
                                          "exec",         "execute",
                                          "exists",       "exit",
                                          "fetch",        "file",
                                          "fillfactor",   "for",
                                          "foreign",      "freetext",
                                          "from",         "full",
                                          "function",     "goto",
                                          "grant",        "group",
                                          "having",       "holdlock",
                                          "identity",     "identity_insert",
                                          "identitycol",  "if",
                                          "in",           "index",
                                          "inner",        "insert",
                                          "intersect",    "into",
                                          "is",           "join",
                                          "key",          "kill",
                                          "left",         "like",
                                          "lineno",       "load",
                                          "national",     "nocheck",
                                          "nonclustered", "not",
                                          "null",         "nullif",
                                          "of",           "off",
                                          "offsets",      "on",
                                          "open",         "option",
                                          "or",           "order",
                                          "outer",        "over",
                                          "percent",      "plan",
                                          "precision",    "primary",
                                          "print",        "proc",
                                          "procedure",    "public",
                                          "raiserror",    "read",
                                          "readtext",     "reconfigure",
                                          "references",   "replication",
                                          "restore",      "restrict",
                                          "return",       "revoke",
                                          "right",        "rollback",
                                          "rowcount",     "rowguidcol",
                                          "rule",         "save",
                                          "schema",       "select",
                                          "set",          "setuser",
                                          "shutdown",     "some",
                                          "statistics",   "table",
                                          "textsize",     "then",
                                          "to",           "top",
                                          "tran",         "transaction",
                                          "trigger",      "truncate",
                                          "tsequal",      "union",
                                          "unique",       "update",
                                          "updatetext",   "use",
                                          "user",         "values",
                                          "varying",      "view",
                                          "waitfor",      "when",
                                          "where",        "while",
                                          "with",         "writetext"};

constexpr std::size_t kExcerptLength = 80;

std::string Shown(const Token& token) {
  switch (token.kind) {
    case TokenKind::String:
      return "'...'";
    case TokenKind::Number:
      return "#";
    case TokenKind::Quoted:
      return "[" + token.text + "]";
    default:
      return token.text;
  }
}

}  // namespace

std::vector<Token> Tokenize(std::string_view batch) {
  return Lexer(batch).Run();
}

std::string Excerpt(const std::vector<Token>& tokens, std::size_t from) {
  std::string text;
  for (std::size_t i = from; i < tokens.size() && text.size() < kExcerptLength; ++i) {
    const std::string shown = Shown(tokens[i]);
    const bool apart =
        tokens[i].kind != TokenKind::Symbol && !text.empty() && text.back() != '(' && text.back() != '.';
    text += (apart ? " " : "") + shown.substr(0, kExcerptLength);
  }
  return text;
}

bool IsReserved(std::string_view word) {
  const std::string lower = LowerName(word);
  return std::binary_search(std::begin(kReserved), std::end(kReserved), std::string_view(lower));
}

}  // namespace korvel::data::embedded
