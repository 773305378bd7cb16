#include <utility>

#include "data/embedded/batch_parser.h"
#include "data/embedded/errors.h"
#include "data/embedded/parser.h"

namespace korvel::data::embedded {

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
  if (TakeWord("login")) return ParseCreateLogin();
  if (IsWord("procedure") || IsWord("proc")) {
    throw Failed(Code::MustBeFirst, "CREATE PROCEDURE tem de ser a primeira instrução do texto");
  }
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
  Value();
  if (Parameters() != before) Fail();
  std::string text = TextFrom(start);
  ParseExpression(text);  // alone it stands without the batch's variables
  return text;
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
  if (TakeWord("login")) return DropLogin{ExpectName()};
  if (TakeWord("table")) return DropObject{ExpectObjectName(), false};
  if (TakeWord("view")) return DropObject{ExpectObjectName(), true};
  if (TakeWord("procedure") || TakeWord("proc")) {
    DropProcedure drop;
    do {
      drop.procedures.push_back(ExpectObjectName());
    } while (TakeSymbol(","));
    return drop;
  }
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
  if (TakeWord("login")) return ParseAlterLogin();
  if (TakeWord("database")) return ParseAlterDatabase();
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

}  // namespace korvel::data::embedded
