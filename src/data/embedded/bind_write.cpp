#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/binder.h"
#include "data/embedded/errors.h"
#include "data/embedded/parser.h"

namespace korvel::data::embedded {
namespace {

const Column& RequireColumn(const Object& table, std::string_view name) {
  const Column* column = table.FindColumn(name);
  if (column == nullptr) throw Failed(Code::NoColumn, "Nome de coluna inválido: '" + std::string(name) + "'");
  return *column;
}

Scope ScopeOf(const Object& table) {
  VisibleSource source{table.name, {}};
  for (const Column& column : table.columns) {
    source.columns.push_back(
        {column.name, column.type, column.nullable, QuoteName(table.name) + "." + QuoteName(column.name)});
  }
  Scope scope;
  scope.sources.push_back(std::move(source));
  return scope;
}

bool IsHere(const ObjectName& name, const Surroundings& around) {
  const bool here = name.database.empty() || SameName(name.database, around.database);
  return here && (name.owner.empty() || SameName(name.owner, "dbo"));
}

/// What a column gets when a statement gives it nothing.
Bound DefaultOf(Binder& binder, const Column& column) {
  if (column.defaultText.empty()) return NullOf(column.type);
  const ExprPtr expr = ParseExpression(column.defaultText);
  return binder.Scalar(*expr, Scope{});
}

void Finish(Binder& binder, Translation& translation, const Object& written) {
  translation.reads = binder.Reads();
  translation.writes = {written.name, written.id};
  translation.slots = std::move(binder.Slots());
  translation.once = binder.Once();
}

class InsertPrinter {
 public:
  InsertPrinter(Binder& binder, const Insert& insert)
      : binder_(binder), insert_(insert), table_(WritableTable(insert.table, binder.Around())) {}

  std::string Run() {
    ChooseColumns();
    std::string names;
    for (const Column* column : given_) names += (names.empty() ? "" : ",") + QuoteName(column->name);
    for (const Column* column : defaulted_) names += (names.empty() ? "" : ",") + QuoteName(column->name);
    const std::string head = "INSERT INTO " + QuoteName(table_.name);
    if (names.empty()) return head + " DEFAULT VALUES";
    return head + " (" + names + ") " + (insert_.query ? FromQuery() : FromRows());
  }
  const Object& Table() const { return table_; }
  bool GivesIdentity() const { return table_.Identity() != nullptr; }

 private:
  bool DefaultValues() const { return insert_.rows.size() == 1 && insert_.rows[0].empty(); }

  void ChooseColumns() {
    for (const std::string& name : insert_.columns) AddGiven(RequireColumn(table_, name));
    if (insert_.columns.empty() && !DefaultValues()) {
      for (const Column& column : table_.columns) {
        if (!column.identity) given_.push_back(&column);
      }
    }
    for (const Column& column : table_.columns) {
      const bool named = std::find(given_.begin(), given_.end(), &column) != given_.end();
      const bool needed = !column.defaultText.empty() || !column.nullable;
      if (!named && needed && !column.identity) defaulted_.push_back(&column);
    }
  }

  void AddGiven(const Column& column) {
    if (column.identity) {
      throw Failed(Code::IdentityInsert,
                   "Não é possível inserir um valor na coluna identidade da tabela '" + table_.name + "'");
    }
    if (std::find(given_.begin(), given_.end(), &column) != given_.end()) {
      throw Failed(Code::ColumnTwice,
                   "A coluna '" + column.name + "' aparece duas vezes na instrução INSERT");
    }
    given_.push_back(&column);
  }

  void RequireCount(std::size_t count) const {
    if (count != given_.size()) {
      throw Failed(Code::ColumnCount, "O número de valores não corresponde ao número de colunas da tabela");
    }
  }

  std::string Defaults() {
    std::string values;
    for (const Column* column : defaulted_) values += "," + AssignDefault(*column);
    return values;
  }

  std::string AssignDefault(const Column& column) {
    const Bound value = binder_.AssignTo(DefaultOf(binder_, column), column);
    return value.sql;
  }

  std::string FromRows() {
    std::string sql = "VALUES ";
    for (std::size_t i = 0; i < insert_.rows.size(); ++i)
      sql += (i == 0 ? "(" : ",(") + Row(insert_.rows[i]) + ")";
    return sql;
  }

  std::string Row(const std::vector<ExprPtr>& row) {
    RequireCount(row.size());
    std::string values;
    for (std::size_t i = 0; i < row.size(); ++i) {
      Bound value = row[i] ? binder_.Scalar(*row[i], Scope{}) : DefaultOf(binder_, *given_[i]);
      values += "," + binder_.AssignTo(std::move(value), *given_[i]).sql;
    }
    values += Defaults();
    return values.substr(1);
  }

  std::string FromQuery() {
    std::vector<VisibleColumn> output;
    const std::string sql = binder_.Nested(*insert_.query, nullptr, output);
    RequireCount(output.size());
    std::string values;
    for (std::size_t i = 0; i < output.size(); ++i) {
      const Bound value = ExpressionOf(fmt::format("\"c{}\"", i + 1), output[i].type);
      values += "," + binder_.AssignTo(value, *given_[i]).sql;
    }
    values += Defaults();
    // The order of the inner query decides the identity keys, so it must survive: the store keeps it.
    return fmt::format("SELECT {} FROM ({})", values.substr(1), sql);
  }

  Binder& binder_;
  const Insert& insert_;
  const Object& table_;
  std::vector<const Column*> given_;
  std::vector<const Column*> defaulted_;
};

}  // namespace

const Object* FindObject(const ObjectName& name, const Surroundings& around) {
  return IsHere(name, around) ? around.catalogue->Find(name.name) : nullptr;
}

const ProcedureEntry* FindProcedure(const ObjectName& name, const Surroundings& around) {
  return IsHere(name, around) ? around.catalogue->FindProcedure(name.name) : nullptr;
}

const Object& WritableTable(const ObjectName& name, const Surroundings& around) {
  const Object* object = FindObject(name, around);
  if (object == nullptr) throw Failed(Code::NoTable, "Nome de objecto inválido: '" + name.name + "'");
  if (object->view) throw Failed(Code::ViewNotWritable, "A vista '" + name.name + "' só pode ser lida");
  return *object;
}

Translation TranslateInsert(const Insert& insert, const Surroundings& around,
                            const ParameterTypes& parameters) {
  Binder binder(around, parameters);
  InsertPrinter printer(binder, insert);
  Translation translation;
  translation.sql = printer.Run();
  translation.givesIdentity = printer.GivesIdentity();
  Finish(binder, translation, printer.Table());
  return translation;
}

Translation TranslateUpdate(const Update& update, const Surroundings& around,
                            const ParameterTypes& parameters) {
  Binder binder(around, parameters);
  const Object& table = WritableTable(update.table, around);
  const Scope scope = ScopeOf(table);
  std::string changes;
  for (const Assignment& assignment : update.assignments) {
    const Column& column = RequireColumn(table, assignment.column);
    if (column.identity) {
      throw Failed(Code::IdentityUpdate, "Não é possível alterar a coluna identidade '" + column.name + "'");
    }
    Bound value = assignment.value ? binder.Scalar(*assignment.value, scope) : DefaultOf(binder, column);
    changes += fmt::format("{}{}={}", changes.empty() ? "" : ",", QuoteName(column.name),
                           binder.AssignTo(std::move(value), column).sql);
  }
  Translation translation;
  translation.sql = "UPDATE " + QuoteName(table.name) + " SET " + changes;
  if (update.where) translation.sql += " WHERE " + binder.Condition(*update.where, scope);
  if (update.where) binder.MarkReads(table);
  Finish(binder, translation, table);
  return translation;
}

Translation TranslateDelete(const Delete& remove, const Surroundings& around,
                            const ParameterTypes& parameters) {
  Binder binder(around, parameters);
  const Object& table = WritableTable(remove.table, around);
  Translation translation;
  translation.sql = "DELETE FROM " + QuoteName(table.name);
  if (remove.where) translation.sql += " WHERE " + binder.Condition(*remove.where, ScopeOf(table));
  if (remove.where) binder.MarkReads(table);
  Finish(binder, translation, table);
  return translation;
}

Translation TranslateDefault(const Object& table, const Column& column, const Surroundings& around) {
  const ParameterTypes none;
  Binder binder(around, none);
  const Bound value = binder.AssignTo(DefaultOf(binder, column), column);
  Translation translation;
  translation.sql =
      fmt::format("UPDATE {} SET {}={}", QuoteName(table.name), QuoteName(column.name), value.sql);
  Finish(binder, translation, table);
  return translation;
}

std::string ConversionSql(std::string_view column, const ColumnType& from, const ColumnType& to,
                          bool nullable) {
  const ParameterTypes none;
  const Surroundings nowhere;
  Binder binder(nowhere, none);
  Column target;
  target.name = column;
  target.type = to;
  target.nullable = nullable;
  return binder.AssignTo(ExpressionOf(QuoteName(column), from), target).sql;
}

}  // namespace korvel::data::embedded
