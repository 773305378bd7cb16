#include "data/embedded/parser.h"

#include "data/embedded/batch_parser.h"

namespace korvel::data::embedded {

Statement BatchParser::OneStatement() {
  if (TakeWords({"update", "statistics"})) return ParseStatistics();
  if (IsWord("insert") || IsWord("update") || IsWord("delete") || IsWord("truncate")) return Data();
  if (IsWord("create") || IsWord("drop") || IsWord("alter")) return Definition();
  if (TakeWord("use")) return Use{ExpectName()};
  if (TakeWord("kill")) return KillProcess{ExpectInteger()};
  if (TakeWord("exec") || TakeWord("execute")) return ParseCall();
  if (TakeWord("set")) return SetOption();
  if (TakeWord("backup")) return ParseBackUp();
  if (TakeWord("restore")) return ParseRestore();
  if (TakeWord("dbcc")) return ParseDbcc();
  if (TakeWords({"reconfigure", "with", "override"}) || TakeWord("reconfigure")) return Accepted{};
  return Transaction();
}

Statement BatchParser::Transaction() {
  TransactionStep step = TransactionStep::Begin;
  if (TakeWord("commit")) {
    step = TransactionStep::Commit;
  } else if (TakeWord("rollback")) {
    step = TransactionStep::Rollback;
  } else {
    ExpectWord("begin");
    if (!IsWord("tran") && !IsWord("transaction")) Fail();
  }
  if (!TakeWord("tran") && !TakeWord("transaction")) TakeWord("work");
  return step;
}

Statement BatchParser::Data() {
  if (TakeWord("insert")) return ParseInsert();
  if (TakeWord("update")) return ParseUpdate();
  if (TakeWord("delete")) return ParseDelete();
  ExpectWord("truncate");
  ExpectWord("table");
  return Truncate{ExpectObjectName()};
}

Insert BatchParser::ParseInsert() {
  Insert insert;
  TakeWord("into");
  insert.table = ExpectObjectName();
  SkipTableHints();
  if (IsSymbol("(") && !IsWord("select", 1)) insert.columns = ExpectNameList();
  if (TakeWords({"default", "values"})) {
    insert.rows.emplace_back();
  } else if (TakeWord("values")) {
    do {
      insert.rows.push_back(ValueRow());
    } while (TakeSymbol(","));
  } else {
    const bool bracketed = TakeSymbol("(");
    insert.query = ParseQuery();
    if (bracketed) ExpectSymbol(")");
  }
  return insert;
}

std::vector<ExprPtr> BatchParser::ValueRow() {
  std::vector<ExprPtr> row;
  ExpectSymbol("(");
  do {
    row.push_back(TakeWord("default") ? nullptr : Value());
  } while (TakeSymbol(","));
  ExpectSymbol(")");
  return row;
}

Update BatchParser::ParseUpdate() {
  Update update;
  update.table = ExpectObjectName();
  SkipTableHints();
  ExpectWord("set");
  do {
    Assignment assignment;
    std::vector<std::string> names{ExpectName()};
    while (TakeSymbol(".")) names.push_back(ExpectName());
    assignment.column = std::move(names.back());
    ExpectSymbol("=");
    if (!TakeWord("default")) assignment.value = Value();
    update.assignments.push_back(std::move(assignment));
  } while (TakeSymbol(","));
  if (TakeWord("where")) update.where = Condition();
  return update;
}

Delete BatchParser::ParseDelete() {
  Delete remove;
  TakeWord("from");
  remove.table = ExpectObjectName();
  SkipTableHints();
  if (TakeWord("where")) remove.where = Condition();
  return remove;
}

/// "SET <option>[, <option>] ON | OFF | <value>", from a list of options that change nothing here.
Statement BatchParser::SetOption() {
  struct Option {
    std::string_view name;
    std::string_view value;  // the one value accepted; empty: any
  };
  static constexpr Option kOptions[] = {{"nocount", ""},
                                        {"quoted_identifier", ""},
                                        {"ansi_nulls", ""},
                                        {"ansi_warnings", ""},
                                        {"ansi_padding", ""},
                                        {"ansi_null_dflt_on", ""},
                                        {"ansi_defaults", ""},
                                        {"arithabort", ""},
                                        {"xact_abort", ""},
                                        {"concat_null_yields_null", "on"},
                                        {"implicit_transactions", "off"},
                                        {"numeric_roundabort", "off"},
                                        {"cursor_close_on_commit", ""},
                                        {"language", ""},
                                        {"dateformat", ""},
                                        {"textsize", ""},
                                        {"lock_timeout", ""}};
  if (TakeWords({"transaction", "isolation", "level"})) {
    if (!TakeWords({"read", "uncommitted"}) && !TakeWords({"read", "committed"}) &&
        !TakeWords({"repeatable", "read"}) && !TakeWord("serializable")) {
      Fail();
    }
    return Accepted{};
  }
  std::string_view wanted;
  do {
    const Option* found = nullptr;
    for (const Option& option : kOptions) found = IsWord(option.name) ? &option : found;
    if (found == nullptr) Fail();
    Next();
    if (!found->value.empty()) wanted = found->value;
  } while (TakeSymbol(","));
  if (!wanted.empty() && !IsWord(wanted)) Fail();
  const bool word = IsWord("on") || IsWord("off") || IsName() || Peek().kind == TokenKind::String;
  if (word) {
    Next();
  } else {
    ExpectInteger();
  }
  return Accepted{};
}

Batch ParseBatch(std::string_view text) {
  return BatchParser(text).Run();
}

StoredProcedure ParseProcedure(std::string_view text) {
  return BatchParser(text).RunProcedure();
}

ObjectName ParseObjectName(std::string_view text) {
  TokenReader reader(text);
  ObjectName name = reader.ExpectObjectName();
  if (!reader.AtEnd()) reader.Fail();
  return name;
}

ExprPtr ParseExpression(std::string_view text) {
  ExpressionParser parser(text);
  ExprPtr expr = parser.Value();
  if (!parser.AtEnd()) parser.Fail();
  return expr;
}

}  // namespace korvel::data::embedded
