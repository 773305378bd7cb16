#include "data/embedded/parser.h"

#include <utility>

#include "data/embedded/errors.h"
#include "data/embedded/parser_base.h"

namespace korvel::data::embedded {
namespace {

class BatchParser : public ExpressionParser {
 public:
  using ExpressionParser::ExpressionParser;

  Batch Run();

 private:
  Statement OneStatement();
  Statement Data();
  Statement Definition();
  Insert ParseInsert();
  std::vector<ExprPtr> ValueRow();
  Update ParseUpdate();
  Delete ParseDelete();
  Statement Create();
  CreateTable ParseCreateTable();
  void TableElement(std::vector<ColumnDefinition>& columns, std::vector<KeyDefinition>& keys);
  ColumnDefinition Column();
  bool ColumnOption(ColumnDefinition& column, std::string& constraint);
  void IdentityOption(ColumnDefinition& column);
  std::string DefaultText();
  KeyDefinition Key(std::string name);
  void SkipStorage();
  CreateView ParseCreateView();
  CreateIndex ParseCreateIndex();
  Statement Drop();
  Statement Alter();
  Statement AlterAdd(ObjectName table);
  Statement AlterDrop(ObjectName table);
  Statement Transaction();
  Statement SetOption();
  Call Procedure();
  ExprPtr ArgumentValue();
};

Batch BatchParser::Run() {
  Batch batch;
  while (TakeSymbol(";")) {
  }
  // A procedure's name alone is a call at the head of a batch only.
  if (IsName()) batch.statements.emplace_back(Procedure());
  while (!AtEnd()) {
    if (!TakeSymbol(";")) batch.statements.push_back(OneStatement());
  }
  batch.parameters = Parameters();
  return batch;
}

Statement BatchParser::OneStatement() {
  if (IsWord("select")) return ParseQuery();
  if (IsWord("insert") || IsWord("update") || IsWord("delete") || IsWord("truncate")) return Data();
  if (IsWord("create") || IsWord("drop") || IsWord("alter")) return Definition();
  if (TakeWord("use")) return Use{ExpectName()};
  if (TakeWord("exec") || TakeWord("execute")) return Procedure();
  if (TakeWord("set")) return SetOption();
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
    row.push_back(TakeWord("default") ? nullptr : Expression());
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
    if (!TakeWord("default")) assignment.value = Expression();
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

Statement BatchParser::Definition() {
  if (TakeWord("create")) return Create();
  if (TakeWord("drop")) return Drop();
  ExpectWord("alter");
  return Alter();
}

Statement BatchParser::Create() {
  if (TakeWord("table")) return ParseCreateTable();
  if (TakeWord("view")) return ParseCreateView();
  if (TakeWord("database")) return CreateDatabase{ExpectName()};
  return ParseCreateIndex();
}

CreateTable BatchParser::ParseCreateTable() {
  CreateTable create;
  create.table = ExpectObjectName();
  ExpectSymbol("(");
  do {
    TableElement(create.columns, create.keys);
  } while (TakeSymbol(",") && !IsSymbol(")"));
  ExpectSymbol(")");
  SkipStorage();
  return create;
}

void BatchParser::TableElement(std::vector<ColumnDefinition>& columns, std::vector<KeyDefinition>& keys) {
  const std::string name = TakeWord("constraint") ? ExpectName() : std::string();
  if (!name.empty() || IsWord("primary") || IsWord("unique")) {
    keys.push_back(Key(name));
    return;
  }
  columns.push_back(Column());
  std::string constraint;
  while (true) {
    if (TakeWord("constraint")) {
      constraint = ExpectName();
    } else if (IsWord("primary") || IsWord("unique")) {
      KeyDefinition key = Key(std::exchange(constraint, {}));
      if (key.columns.empty()) key.columns = {columns.back().name};
      keys.push_back(std::move(key));
    } else if (!ColumnOption(columns.back(), constraint)) {
      break;
    }
  }
}

ColumnDefinition BatchParser::Column() {
  ColumnDefinition column;
  column.name = ExpectName();
  column.type = ExpectType();
  return column;
}

bool BatchParser::ColumnOption(ColumnDefinition& column, std::string& constraint) {
  if (TakeWord("null")) {
    column.nullable = true;
  } else if (TakeWords({"not", "null"})) {
    column.nullable = false;
  } else if (TakeWord("identity")) {
    IdentityOption(column);
  } else if (TakeWord("default")) {
    column.defaultText = DefaultText();
    column.defaultName = std::exchange(constraint, {});
  } else if (TakeWord("collate")) {
    // Every text here compares by the one order that this system's servers have.
    ExpectName();
  } else {
    return false;
  }
  return true;
}

void BatchParser::IdentityOption(ColumnDefinition& column) {
  column.identity = true;
  column.nullable = false;
  if (!TakeSymbol("(")) return;
  column.seed = ExpectInteger();
  ExpectSymbol(",");
  if (ExpectInteger() != 1) Fail();
  ExpectSymbol(")");
}

std::string BatchParser::DefaultText() {
  const std::size_t start = Offset();
  const int before = Parameters();
  Expression();
  if (Parameters() != before) Fail();
  return TextFrom(start);
}

KeyDefinition BatchParser::Key(std::string name) {
  KeyDefinition key;
  key.name = std::move(name);
  key.unique = true;
  if (TakeWord("unique")) {
    key.kind = KeyKind::UniqueConstraint;
  } else {
    ExpectWord("primary");
    ExpectWord("key");
    key.kind = KeyKind::PrimaryKey;
  }
  key.clustered = TakeWord("clustered") || (!TakeWord("nonclustered") && key.kind == KeyKind::PrimaryKey);
  if (IsSymbol("(")) key.columns = ExpectNameList();
  SkipStorage();
  return key;
}

/// "WITH FILLFACTOR = 90 ON [PRIMARY] TEXTIMAGE_ON [PRIMARY]": a database is one file, so none of it changes anything.
void BatchParser::SkipStorage() {
  if (TakeWords({"with", "fillfactor"})) {
    ExpectSymbol("=");
    ExpectInteger();
  }
  while (IsWord("on") || IsWord("textimage_on")) {
    Next();
    ExpectName();
  }
}

CreateView BatchParser::ParseCreateView() {
  CreateView create;
  create.view = ExpectObjectName();
  if (IsSymbol("(")) create.columns = ExpectNameList();
  ExpectWord("as");
  const std::size_t start = Offset();
  create.query = ParseQuery();
  if (Parameters() != 0 || !create.query->orderBy.empty()) Fail();
  create.text = TextFrom(start);
  return create;
}

CreateIndex BatchParser::ParseCreateIndex() {
  CreateIndex create;
  create.key.unique = TakeWord("unique");
  create.key.clustered = TakeWord("clustered");
  if (!create.key.clustered) TakeWord("nonclustered");
  ExpectWord("index");
  create.key.name = ExpectName();
  ExpectWord("on");
  create.table = ExpectObjectName();
  create.key.columns = ExpectNameList();
  SkipStorage();
  return create;
}

Statement BatchParser::Drop() {
  if (TakeWord("table")) return DropObject{ExpectObjectName(), false};
  if (TakeWord("view")) return DropObject{ExpectObjectName(), true};
  if (TakeWord("database")) {
    DropDatabase drop;
    do {
      drop.names.push_back(ExpectName());
    } while (TakeSymbol(","));
    return drop;
  }
  ExpectWord("index");
  DropIndex drop;
  drop.table = ExpectObjectName();
  drop.index =
      std::exchange(drop.table.name, std::exchange(drop.table.owner, std::exchange(drop.table.database, {})));
  if (TakeWord("on")) drop.table = ExpectObjectName();
  if (drop.table.name.empty()) Fail();
  return drop;
}

Statement BatchParser::Alter() {
  ExpectWord("table");
  ObjectName table = ExpectObjectName();
  if (!TakeWords({"with", "nocheck"})) TakeWords({"with", "check"});
  if (TakeWord("add")) return AlterAdd(std::move(table));
  if (TakeWord("drop")) return AlterDrop(std::move(table));
  ExpectWord("alter");
  ExpectWord("column");
  AlterColumn alter{std::move(table), Column()};
  std::string constraint;
  while (ColumnOption(alter.column, constraint)) {
  }
  if (alter.column.identity || !alter.column.defaultText.empty()) Fail();
  return alter;
}

Statement BatchParser::AlterAdd(ObjectName table) {
  if (IsWord("default") || (IsWord("constraint") && IsWord("default", 2))) {
    AddDefault add{std::move(table), TakeWord("constraint") ? ExpectName() : std::string(), {}, {}};
    ExpectWord("default");
    add.text = DefaultText();
    ExpectWord("for");
    add.column = ExpectName();
    return add;
  }
  AddColumns add{std::move(table), {}, {}};
  do {
    TableElement(add.columns, add.keys);
  } while (TakeSymbol(","));
  for (const KeyDefinition& key : add.keys) {
    if (key.columns.empty()) Fail();
  }
  return add;
}

Statement BatchParser::AlterDrop(ObjectName table) {
  if (TakeWord("column")) {
    DropColumn drop{std::move(table), {}};
    do {
      drop.columns.push_back(ExpectName());
    } while (TakeSymbol(","));
    return drop;
  }
  TakeWord("constraint");
  return DropConstraint{std::move(table), ExpectName()};
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

Call BatchParser::Procedure() {
  Call call;
  call.procedure = ExpectObjectName();
  if (AtEnd() || IsSymbol(";") ||
      (Peek().kind == TokenKind::Word && IsReserved(Peek().text) && !IsWord("null"))) {
    return call;
  }
  do {
    Argument argument;
    if (Peek().kind == TokenKind::Variable && IsSymbol("=", 1)) {
      argument.name = LowerName(Next().text);
      ExpectSymbol("=");
    }
    argument.value = ArgumentValue();
    call.arguments.push_back(std::move(argument));
  } while (TakeSymbol(","));
  return call;
}

/// A constant or a marker; a bare word stands for its own text.
ExprPtr BatchParser::ArgumentValue() {
  const bool constant = Peek().kind == TokenKind::Number || Peek().kind == TokenKind::String ||
                        Peek().kind == TokenKind::Parameter || IsSymbol("-") || IsWord("null");
  if (constant) return Expression();
  auto word = std::make_unique<Expr>();
  word->kind = ExprKind::String;
  if (!IsName()) Fail();
  word->text = Next().text;
  return word;
}

}  // namespace

Batch ParseBatch(std::string_view text) {
  return BatchParser(text).Run();
}

ExprPtr ParseExpression(std::string_view text) {
  ExpressionParser parser(text);
  ExprPtr expr = parser.Expression();
  if (!parser.AtEnd()) parser.Fail();
  return expr;
}

}  // namespace korvel::data::embedded
