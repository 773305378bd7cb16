#include "data/embedded/parser_base.h"

namespace korvel::data::embedded {

QueryPtr ExpressionParser::ParseQuery() {
  bool assigns = false;
  QueryPtr query = ParseQuery(assigns);
  if (assigns) Fail();
  return query;
}

QueryPtr ExpressionParser::ParseQuery(bool& assigns) {
  auto query = std::make_unique<Query>();
  query->selects.push_back(SelectBody());
  while (TakeWord("union")) {
    query->unionAll.push_back(TakeWord("all"));
    query->selects.push_back(SelectBody());
  }
  if (TakeWords({"order", "by"})) query->orderBy = OrderList();
  assigns = query->selects[0].items[0].variable >= 0;
  if (assigns && query->selects.size() > 1) Fail();
  for (const Select& select : query->selects) {
    for (const SelectItem& item : select.items) {
      if ((item.variable >= 0) != assigns) Fail();
    }
  }
  return query;
}

Select ExpressionParser::SelectBody() {
  Select select;
  ExpectWord("select");
  select.distinct = TakeWord("distinct");
  if (!select.distinct) TakeWord("all");
  if (TakeWord("top")) {
    select.top = Primary();
    if (IsWord("percent")) Fail();
  }
  do {
    select.items.push_back(Item());
  } while (TakeSymbol(","));
  if (TakeWord("from")) select.from = FromList();
  if (TakeWord("where")) select.where = Condition();
  if (TakeWords({"group", "by"})) {
    do {
      select.groupBy.push_back(Value());
    } while (TakeSymbol(","));
  }
  if (TakeWord("having")) select.having = Condition();
  return select;
}

/// A name, or a text that serves as one.
std::string ExpressionParser::ExpectAlias() {
  return Peek().kind == TokenKind::String ? Next().text : ExpectName();
}

SelectItem ExpressionParser::Item() {
  SelectItem item;
  if (IsName() && IsSymbol("=", 1)) {
    item.alias = Next().text;
    Next();
    item.expr = Value();
    return item;
  }
  if (Peek().kind == TokenKind::Variable && IsSymbol("=", 1)) {
    item.variable = ExpectVariable();
    Next();
    item.expr = Value();
    return item;
  }
  item.expr = Value();
  if (TakeWord("as") || IsName() || Peek().kind == TokenKind::String) item.alias = ExpectAlias();
  return item;
}

std::vector<std::unique_ptr<Source>> ExpressionParser::FromList() {
  std::vector<std::unique_ptr<Source>> sources;
  do {
    sources.push_back(JoinedSource());
  } while (TakeSymbol(","));
  return sources;
}

std::optional<JoinKind> ExpressionParser::TakeJoin() {
  struct Word {
    std::string_view word;
    JoinKind kind;
  };
  static constexpr Word kOuter[] = {
      {"left", JoinKind::Left}, {"right", JoinKind::Right}, {"full", JoinKind::Full}};
  for (const Word& outer : kOuter) {
    if (!TakeWord(outer.word)) continue;
    TakeWord("outer");
    ExpectWord("join");
    return outer.kind;
  }
  if (TakeWords({"cross", "join"})) return JoinKind::Cross;
  if (TakeWords({"inner", "join"}) || TakeWord("join")) return JoinKind::Inner;
  return std::nullopt;
}

std::unique_ptr<Source> ExpressionParser::JoinedSource() {
  std::unique_ptr<Source> left = OneSource();
  while (const auto kind = TakeJoin()) {
    auto joined = std::make_unique<Source>();
    joined->join = *kind;
    joined->left = std::move(left);
    joined->right = OneSource();
    if (*kind != JoinKind::Cross) {
      ExpectWord("on");
      joined->on = Condition();
    }
    left = std::move(joined);
  }
  return left;
}

std::unique_ptr<Source> ExpressionParser::OneSource() {
  auto source = std::make_unique<Source>();
  if (TakeSymbol("(")) {
    if (!IsWord("select")) Fail();
    source->derived = ParseQuery();
    ExpectSymbol(")");
  } else {
    source->table = ExpectObjectName();
    SkipTableHints();
  }
  if (TakeWord("as") || IsName()) source->alias = ExpectName();
  if (source->derived && source->alias.empty()) Fail();
  SkipTableHints();
  return source;
}

/// "With (NoLock)", "(nolock)": readers never wait for writers here, so a hint changes nothing.
void ExpressionParser::SkipTableHints() {
  static constexpr std::string_view kHints[] = {"nolock",   "readuncommitted", "readcommitted", "rowlock",
                                                "paglock",  "tablock",         "updlock",       "holdlock",
                                                "readpast", "tablockx"};
  const bool with = IsWord("with") && IsSymbol("(", 1);
  bool hint = false;
  for (const std::string_view word : kHints)
    hint |= IsSymbol("(", with ? 1 : 0) && IsWord(word, with ? 2 : 1);
  if (!hint) return;
  if (with) Next();
  Next();
  do {
    bool known = false;
    for (const std::string_view word : kHints) known = known || TakeWord(word);
    if (!known) Fail();
  } while (TakeSymbol(",") || !IsSymbol(")"));
  ExpectSymbol(")");
}

std::vector<OrderItem> ExpressionParser::OrderList() {
  std::vector<OrderItem> items;
  do {
    OrderItem item;
    item.expr = Value();
    item.descending = TakeWord("desc");
    if (!item.descending) TakeWord("asc");
    items.push_back(std::move(item));
  } while (TakeSymbol(","));
  return items;
}

}  // namespace korvel::data::embedded
