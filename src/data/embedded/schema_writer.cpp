#include "data/embedded/schema_writer.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/slots.h"
#include "data/embedded/sql_functions.h"

namespace korvel::data::embedded {
namespace {

std::string IndexName(const Object& table, const KeyDefinition& key) {
  return QuoteName(table.name + "." + key.name);
}

/// Second index of a unique key: it holds the rows that have a NULL in the key, which the store alone would let repeat.
std::string NullIndexName(const Object& table, const KeyDefinition& key) {
  return QuoteName(table.name + "." + key.name + ":null");
}

std::string KindText(KeyKind kind) {
  return kind == KeyKind::PrimaryKey ? "PK" : kind == KeyKind::UniqueConstraint ? "UQ" : "IX";
}

std::string ColumnSql(const ColumnDefinition& column) {
  if (column.identity) return QuoteName(column.name) + " INTEGER PRIMARY KEY AUTOINCREMENT";
  return fmt::format("{} COLLATE {}", QuoteName(column.name), kCollation);
}

bool IsIdentityKey(const Object& table, const KeyDefinition& key) {
  const Column* identity = table.Identity();
  return identity != nullptr && key.columns.size() == 1 && SameName(key.columns[0], identity->name);
}

bool InKey(const KeyDefinition& key, std::string_view column) {
  return std::any_of(key.columns.begin(), key.columns.end(),
                     [&](const std::string& name) { return SameName(name, column); });
}

void RequireName(const std::string& name) {
  constexpr std::size_t kLongest = 128;
  const bool own = name.starts_with('$') || LowerName(name).starts_with("sqlite_");
  if (own || CountCharacters(name) > kLongest || name.find('\0') != std::string::npos) {
    throw Failed(Code::BadName, "O nome do objecto ou da coluna não é válido");
  }
}

void RequireIdentityType(const ColumnDefinition& column) {
  if (column.identity &&
      (!IsExact(column.type) || ScaleOf(column.type) != 0 || !column.defaultText.empty())) {
    throw Failed(Code::CannotAlter, "A coluna identidade '" + column.name + "' tem de ser um número inteiro");
  }
}

void RequireColumns(const std::vector<ColumnDefinition>& columns) {
  std::vector<std::string> names;
  for (const ColumnDefinition& column : columns) {
    RequireName(column.name);
    RequireIdentityType(column);
    names.push_back(LowerName(column.name));
  }
  std::sort(names.begin(), names.end());
  const auto twice = std::adjacent_find(names.begin(), names.end());
  if (twice != names.end())
    throw Failed(Code::ColumnTwice, "A coluna '" + *twice + "' aparece duas vezes na tabela");
  if (std::count_if(columns.begin(), columns.end(), [](const ColumnDefinition& c) { return c.identity; }) >
      1) {
    throw Failed(Code::CannotAlter, "Uma tabela só pode ter uma coluna identidade");
  }
}

}  // namespace

SchemaWriter::SchemaWriter(Database& database)
    : database_(database),
      store_(database.File()),
      write_(store_),
      around_{database.Now(), database.Name(), {}} {
  around_.systemTable = [](std::string_view, std::string_view) { return std::optional<RowTable>(); };
}

void SchemaWriter::Apply(const CreateTable& create) {
  RequireFree(create.table);
  RequireName(create.table.name);
  RequireColumns(create.columns);
  std::string columns;
  for (const ColumnDefinition& column : create.columns)
    columns += (columns.empty() ? "" : ",") + ColumnSql(column);
  store_.Run("CREATE TABLE " + QuoteName(create.table.name) + " (" + columns + ")");
  const std::int64_t id = AddObject(create.table.name, 'U', "");
  int ordinal = 0;
  for (const ColumnDefinition& column : create.columns) {
    AddCatalogueColumn(id, ++ordinal, column);
    if (column.identity && column.seed != 1) {
      Change("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)", {create.table.name, column.seed - 1});
    }
  }
  Reload(id);
  for (const KeyDefinition& key : create.keys) {
    if (key.kind == KeyKind::PrimaryKey) {
      // The columns of a primary key made with its table refuse NULL, said or not.
      for (const std::string& column : key.columns) {
        Change(R"(UPDATE "$columns" SET nullable=0 WHERE object=?1 AND name=?2 COLLATE NOCASE)",
               {id, column});
      }
      Reload(id);
    }
    AddKey(Table(create.table), key);
  }
  Finish(id);
}

void SchemaWriter::Apply(const CreateView& create, const Translation& query) {
  RequireFree(create.view);
  RequireName(create.view.name);
  if (!query.slots.empty() || query.once) {
    throw Failed(Code::Syntax, "A vista '" + create.view.name + "' usa valores que só existem numa ligação");
  }
  std::string names;
  for (std::size_t i = 0; i < query.fields.size(); ++i)
    names += fmt::format("{}\"c{}\"", i == 0 ? "" : ",", i + 1);
  store_.Run("CREATE VIEW " + QuoteName(create.view.name) + " (" + names + ") AS " + query.sql);
  const std::int64_t id = AddObject(create.view.name, 'V', create.text);
  if (!create.columns.empty() && create.columns.size() != query.fields.size()) {
    throw Failed(Code::ColumnCount, "A vista tem um número de nomes diferente do de colunas");
  }
  std::vector<ColumnDefinition> columns;
  for (std::size_t i = 0; i < query.fields.size(); ++i) {
    ColumnDefinition column;
    column.name = create.columns.empty() ? query.fields[i].name : create.columns[i];
    column.type = query.types[i];
    if (column.name.empty()) throw Failed(Code::NoColumn, "Uma coluna da vista não tem nome");
    columns.push_back(std::move(column));
  }
  RequireColumns(columns);
  for (std::size_t i = 0; i < columns.size(); ++i)
    AddCatalogueColumn(id, static_cast<int>(i) + 1, columns[i]);
  Finish(id);
}

void SchemaWriter::Apply(const CreateIndex& create) {
  AddKey(Table(create.table), create.key);
  Finish(Table(create.table).id);
}

void SchemaWriter::Apply(const DropIndex& drop) {
  const Object& table = Table(drop.table);
  const KeyDefinition* key = table.FindKey(drop.index);
  if (key == nullptr || key->kind != KeyKind::Index) {
    throw Failed(
        Code::NoObjectToDrop,
        fmt::format("Não é possível eliminar o índice '{}.{}', porque não existe", table.name, drop.index));
  }
  DropKey(table, *key);
  Finish(table.id);
}

void SchemaWriter::Apply(const DropObject& drop) {
  const Object* object = FindObject(drop.name, around_);
  if (object == nullptr || object->view != drop.view) {
    throw Failed(Code::NoObjectToDrop, fmt::format("Não é possível eliminar {} '{}', porque não existe",
                                                   drop.view ? "a vista" : "a tabela", drop.name.name));
  }
  store_.Run((drop.view ? "DROP VIEW " : "DROP TABLE ") + QuoteName(object->name));
  Change(R"(DELETE FROM "$objects" WHERE id=?1)", {object->id});
  Change(R"(DELETE FROM "$columns" WHERE object=?1)", {object->id});
  Change(R"(DELETE FROM "$keys" WHERE object=?1)", {object->id});
  Finish(object->id);
}

void SchemaWriter::Apply(const AddColumns& add) {
  const Object& table = Table(add.table);
  int ordinal = table.columns.empty() ? 0 : table.columns.back().ordinal;
  RequireColumns(add.columns);
  for (const ColumnDefinition& column : add.columns) AddColumn(table, ++ordinal, column);
  Reload(table.id);
  for (const ColumnDefinition& column : add.columns) {
    const Object& now = Table(add.table);
    // A default fills the rows that are there only where the column could not be empty.
    if (!column.nullable) FillDefault(now, *now.FindColumn(column.name));
  }
  for (const KeyDefinition& key : add.keys) AddKey(Table(add.table), key);
  Finish(table.id);
}

void SchemaWriter::AddColumn(const Object& table, int ordinal, const ColumnDefinition& column) {
  if (table.FindColumn(column.name) != nullptr) {
    throw Failed(Code::ColumnTwice,
                 fmt::format("A coluna '{}' já existe na tabela '{}'", column.name, table.name));
  }
  if (column.identity) {
    throw Failed(Code::CannotAlter, "Uma coluna identidade só pode ser criada com a tabela");
  }
  store_.Run("ALTER TABLE " + QuoteName(table.name) + " ADD " + ColumnSql(column));
  AddCatalogueColumn(table.id, ordinal, column);
}

void SchemaWriter::Apply(const AddDefault& add) {
  const Object& table = Table(add.table);
  const Column* column = table.FindColumn(add.column);
  if (column == nullptr) throw Failed(Code::NoColumn, "Nome de coluna inválido: '" + add.column + "'");
  if (!column->defaultText.empty()) {
    throw Failed(Code::KeyExists, "A coluna '" + add.column + "' já tem um valor por defeito");
  }
  const std::string name = add.name.empty() ? fmt::format("DF_{}_{}", table.name, column->name) : add.name;
  Change(R"(UPDATE "$columns" SET default_text=?1, default_name=?2 WHERE object=?3 AND ordinal=?4)",
         {add.text, name, table.id, std::int64_t{column->ordinal}});
  Finish(table.id);
}

void SchemaWriter::Apply(const AlterColumn& alter) {
  const Object& table = Table(alter.table);
  const Column* column = table.FindColumn(alter.column.name);
  if (column == nullptr) {
    throw Failed(Code::NoColumnToAlter,
                 fmt::format("A coluna '{}' não existe na tabela '{}'", alter.column.name, table.name));
  }
  const ColumnType& to = alter.column.type;
  const bool same = column->type == to && column->nullable == alter.column.nullable;
  if (column->identity && !same) throw Failed(Code::CannotAlter, "A coluna identidade não pode ser alterada");
  const bool widens =
      column->type.base == Type::Varchar && to.base == Type::Varchar && to.length >= column->type.length;
  if (!same && !(widens && column->nullable == alter.column.nullable)) {
    RequireUnkeyed(table, column->name, Code::ColumnInUse);
  }
  RewriteColumn(table, *column, alter.column);
  Change(R"(UPDATE "$columns" SET type=?1, length=?2, precision=?3, scale=?4, nullable=?5
            WHERE object=?6 AND ordinal=?7)",
         {TypeName(to.base), std::int64_t{to.length}, std::int64_t{to.precision}, std::int64_t{to.scale},
          std::int64_t{alter.column.nullable}, table.id, std::int64_t{column->ordinal}});
  Finish(table.id);
}

/// Rows are touched only when their stored values change, or may not fit.
void SchemaWriter::RewriteColumn(const Object& table, const Column& column, const ColumnDefinition& to) {
  const std::string name = QuoteName(column.name);
  const bool emptiable = to.nullable || !column.nullable;
  const std::string converted = ConversionSql(column.name, column.type, to.type, emptiable);
  if (converted == name) return;
  store_.Run(fmt::format("UPDATE {} SET {}={}", QuoteName(table.name), name, converted));
}

void SchemaWriter::Apply(const DropColumn& drop) {
  for (const std::string& name : drop.columns) {
    const Object& table = Table(drop.table);
    const Column* column = table.FindColumn(name);
    if (column == nullptr) {
      throw Failed(Code::NoColumnToAlter,
                   fmt::format("A coluna '{}' não existe na tabela '{}'", name, table.name));
    }
    RequireUnkeyed(table, column->name, Code::ColumnInUse);
    if (column->identity || table.columns.size() == 1 || !column->defaultText.empty()) {
      throw Failed(Code::ColumnInUse, "A coluna '" + name + "' não pode ser eliminada");
    }
    store_.Run(fmt::format("ALTER TABLE {} DROP COLUMN {}", QuoteName(table.name), QuoteName(column->name)));
    Change(R"(DELETE FROM "$columns" WHERE object=?1 AND ordinal=?2)",
           {table.id, std::int64_t{column->ordinal}});
    Reload(table.id);
  }
  Finish(Table(drop.table).id);
}

void SchemaWriter::Apply(const DropConstraint& drop) {
  const Object& table = Table(drop.table);
  const KeyDefinition* key = table.FindKey(drop.name);
  const auto column = std::find_if(table.columns.begin(), table.columns.end(), [&](const Column& c) {
    return !c.defaultText.empty() && SameName(c.defaultName, drop.name);
  });
  if (key != nullptr && key->kind != KeyKind::Index) {
    DropKey(table, *key);
  } else if (column != table.columns.end()) {
    Change(R"(UPDATE "$columns" SET default_text='', default_name='' WHERE object=?1 AND ordinal=?2)",
           {table.id, std::int64_t{column->ordinal}});
  } else {
    throw Failed(Code::NoConstraint,
                 "'" + drop.name + "' não é uma restrição da tabela '" + table.name + "'");
  }
  Finish(table.id);
}

/// The identity starts again at its seed of 1.
void SchemaWriter::Apply(const Truncate& truncate) {
  const Object& table = Table(truncate.table);
  store_.Run("DELETE FROM " + QuoteName(table.name));
  if (table.Identity() != nullptr) Change("DELETE FROM sqlite_sequence WHERE name=?1", {table.name});
  write_.Keep();
}

void SchemaWriter::Apply(const CreateProcedure& create) {
  const ProcedureEntry* present = FindProcedure(create.procedure, around_);
  std::int64_t id = 0;
  if (!create.alters) {
    RequireFree(create.procedure);
    RequireName(create.procedure.name);
    id = AddObject(create.procedure.name, 'P', create.text);
  } else if (present != nullptr) {
    id = present->id;
    Change(R"(UPDATE "$objects" SET text=?1 WHERE id=?2)", {create.text, id});
  } else {
    throw Failed(Code::NoTable, "Nome de objecto inválido: '" + create.procedure.name + "'");
  }
  Finish(id);
}

void SchemaWriter::Apply(const DropProcedure& drop) {
  std::int64_t id = 0;
  for (const ObjectName& name : drop.procedures) {
    const ProcedureEntry* present = FindProcedure(name, around_);
    if (present == nullptr) {
      throw Failed(Code::NoObjectToDrop,
                   fmt::format("Não é possível eliminar o procedimento '{}', porque não existe", name.name));
    }
    id = present->id;
    Change(R"(DELETE FROM "$objects" WHERE id=?1)", {id});
    Reload(id);
  }
  Finish(id);
}

const Object& SchemaWriter::Table(const ObjectName& name) const {
  return WritableTable(name, around_);
}

void SchemaWriter::RequireFree(const ObjectName& name) const {
  const bool elsewhere = !name.database.empty() && !SameName(name.database, around_.database);
  if (elsewhere || (!name.owner.empty() && !SameName(name.owner, "dbo"))) {
    throw Failed(Code::NoTable,
                 "O objecto '" + name.name + "' só pode ser criado na base de dados corrente, de dbo");
  }
  if (around_.catalogue->IdOf(name.name)) {
    throw Failed(Code::ObjectExists, "Já existe um objecto com o nome '" + name.name + "' na base de dados");
  }
}

std::int64_t SchemaWriter::AddObject(const std::string& name, char kind, const std::string& text) {
  Change(R"(INSERT INTO "$objects" (name, kind, text) VALUES (?1, ?2, ?3))",
         {name, std::string_view(&kind, 1), text});
  return store_.LastInsertKey();
}

void SchemaWriter::AddCatalogueColumn(std::int64_t object, int ordinal, const ColumnDefinition& column) {
  std::string defaultName = column.defaultName;
  if (defaultName.empty() && !column.defaultText.empty())
    defaultName = fmt::format("DF_{}_{}", object, column.name);
  Change(
      R"(INSERT INTO "$columns" VALUES (?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11))",
      {object, std::int64_t{ordinal}, column.name, TypeName(column.type.base),
       std::int64_t{column.type.length}, std::int64_t{column.type.precision}, std::int64_t{column.type.scale},
       std::int64_t{column.nullable}, std::int64_t{column.identity}, column.defaultText, defaultName});
}

void SchemaWriter::AddKey(const Object& table, KeyDefinition key) {
  const auto isPrimary = [](const KeyDefinition& k) { return k.kind == KeyKind::PrimaryKey; };
  const bool second =
      key.kind == KeyKind::PrimaryKey && std::any_of(table.keys.begin(), table.keys.end(), isPrimary);
  if (second) throw Failed(Code::KeyExists, "A tabela '" + table.name + "' já tem uma chave primária");
  if (key.name.empty())
    key.name = fmt::format("{}_{}_{}", KindText(key.kind), table.name, table.keys.size() + 1);
  RequireName(key.name);
  if (table.FindKey(key.name) != nullptr) {
    const Code code = key.kind == KeyKind::Index ? Code::IndexExists : Code::ObjectExists;
    throw Failed(code,
                 fmt::format("Já existe um índice ou restrição '{}' na tabela '{}'", key.name, table.name));
  }
  std::string ordinals;
  for (const std::string& name : key.columns) {
    const Column* column = table.FindColumn(name);
    if (column == nullptr) throw Failed(Code::NoColumn, "Nome de coluna inválido: '" + name + "'");
    if (column->type.base == Type::Text) {
      throw Failed(Code::TextNotComparable, "Uma coluna text não pode entrar num índice");
    }
    if (column->nullable && key.kind == KeyKind::PrimaryKey) {
      throw Failed(Code::NullableKey, "A coluna '" + name + "' aceita nulos e não serve para chave primária");
    }
    ordinals += (ordinals.empty() ? "" : ",") + std::to_string(column->ordinal);
  }
  if (!(key.unique && IsIdentityKey(table, key))) CreateStoreIndex(table, key);
  Change(R"(INSERT INTO "$keys" VALUES (?1,?2,?3,?4,?5,?6))",
         {table.id, key.name, KindText(key.kind), std::int64_t{key.unique}, std::int64_t{key.clustered},
          ordinals});
  Reload(table.id);
}

void SchemaWriter::CreateStoreIndex(const Object& table, const KeyDefinition& key) {
  std::string columns;
  std::string filled;
  std::string anyNull;
  for (const std::string& name : key.columns) {
    const std::string column = QuoteName(table.FindColumn(name)->name);
    columns += (columns.empty() ? "" : ",") + column;
    filled += fmt::format("{}ifnull({},x'') COLLATE {}", filled.empty() ? "" : ",", column, kCollation);
    if (table.FindColumn(name)->nullable) anyNull += (anyNull.empty() ? "" : " OR ") + column + " IS NULL";
  }
  try {
    store_.Run(fmt::format("CREATE {}INDEX {} ON {} ({})", key.unique ? "UNIQUE " : "", IndexName(table, key),
                           QuoteName(table.name), columns));
    if (!key.unique || anyNull.empty()) return;
    store_.Run(fmt::format("CREATE UNIQUE INDEX {} ON {} ({}) WHERE {}", NullIndexName(table, key),
                           QuoteName(table.name), filled, anyNull));
  } catch (const Error& failure) {
    if (failure.Kind() != Failure::Integrity) throw;
    throw Failed(Code::DuplicateOnCreate,
                 fmt::format("O índice único '{}' não foi criado: a tabela '{}' tem chaves repetidas",
                             key.name, table.name));
  }
}

void SchemaWriter::DropKey(const Object& table, const KeyDefinition& key) {
  store_.Run("DROP INDEX IF EXISTS " + IndexName(table, key));
  store_.Run("DROP INDEX IF EXISTS " + NullIndexName(table, key));
  Change(R"(DELETE FROM "$keys" WHERE object=?1 AND name=?2)", {table.id, key.name});
}

void SchemaWriter::RequireUnkeyed(const Object& table, std::string_view column, Code code) const {
  const auto found = std::find_if(table.keys.begin(), table.keys.end(),
                                  [&](const KeyDefinition& key) { return InKey(key, column); });
  if (found == table.keys.end()) return;
  throw Failed(code, fmt::format("O índice '{}' depende da coluna '{}'", found->name, column));
}

void SchemaWriter::FillDefault(const Object& table, const Column& column) {
  if (store_.Number("SELECT EXISTS (SELECT 1 FROM " + QuoteName(table.name) + ")") == 0) return;
  const Translation fill = TranslateDefault(table, column, around_);
  Prepared statement = store_.Prepare(fill.sql);
  std::vector<OwnedStored> values;
  BindSlots(statement, fill.slots, {SessionValues{}, {}, {}}, values);
  statement.Run();
}

void SchemaWriter::Change(std::string_view sql, std::initializer_list<Stored> values) {
  Prepared statement = store_.Prepare(sql);
  int parameter = 0;
  for (const Stored& value : values) statement.Bind(++parameter, value);
  statement.Run();
}

void SchemaWriter::Reload(std::int64_t object) {
  around_.catalogue = Catalogue::Reread(store_, *around_.catalogue, object);
}

void SchemaWriter::Finish(std::int64_t object) {
  Catalogue::RaiseVersion(store_);
  Reload(object);
  write_.Keep();
  database_.Take(around_.catalogue);
}

}  // namespace korvel::data::embedded
