#include <algorithm>
#include <charconv>
#include <utility>

#include <fmt/format.h>

#include "data/embedded/binder.h"
#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

constexpr std::size_t kMostTables = 60;

struct OutputColumn {
  std::string name;
  Bound value;
};

std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ",") + part;
  return text;
}

/// Rows as a query with the columns c1, c2, ...
std::string RowsSql(const RowTable& table) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < table.headings.size(); ++i) {
    const bool text = IsText(table.headings[i].type);
    const std::string source = table.rows.empty() ? "NULL" : fmt::format("column{}", i + 1);
    names.push_back(
        fmt::format("{}{}{} AS \"c{}\"", source, text ? " COLLATE " : "", text ? kCollation : "", i + 1));
  }
  std::vector<std::string> rows;
  for (const auto& row : table.rows) {
    std::vector<std::string> values;
    for (const OwnedStored& value : row) values.push_back(ConstantOf(value, kInt).sql);
    rows.push_back("(" + Joined(values) + ")");
  }
  return rows.empty() ? fmt::format("SELECT {} WHERE 0", Joined(names))
                      : fmt::format("SELECT {} FROM (VALUES {})", Joined(names), Joined(rows));
}

/// Prints one SELECT of a query.
class SelectPrinter {
 public:
  SelectPrinter(Binder& binder, const Select& select, const Scope* outer) : binder_(binder), select_(select) {
    scope_.outer = outer;
  }

  /// `nested`: its columns are called c1, c2, ... `orderBy`: only of a query of one SELECT.
  std::string Run(bool nested, const std::vector<OrderItem>& orderBy);
  std::vector<OutputColumn>& Output() { return output_; }

 private:
  std::string From();
  std::string PrintSource(const Source& source, bool listed);
  std::string PrintTable(const Source& source);
  std::string PrintDerived(const Source& source);
  std::string AddSource(const std::string& sql, const std::string& alias, std::vector<VisibleColumn> columns);
  void Items();
  void ExpandStar(const Expr& star);
  Bound Item(const Expr& expr);
  void SetGrouping();
  std::string GroupBy();
  std::string Order(const std::vector<OrderItem>& orderBy);
  std::string OrderKey(const Expr& expr);
  std::string Limit();
  std::string ItemList(bool nested) const;

  Binder& binder_;
  const Select& select_;
  Scope scope_;
  Binder::Grouping grouping_;
  bool grouped_ = false;
  std::vector<OutputColumn> output_;
};

std::string SelectPrinter::Run(bool nested, const std::vector<OrderItem>& orderBy) {
  Binder::Grouping* around = std::exchange(binder_.grouping, nullptr);
  const std::string from = From();
  const std::string where = select_.where ? " WHERE " + binder_.Condition(*select_.where, scope_) : "";
  SetGrouping();
  const std::string groups = GroupBy();
  binder_.grouping = grouped_ ? &grouping_ : nullptr;
  Items();
  std::string having;
  if (select_.having) {
    having = " HAVING " + binder_.Condition(*select_.having, scope_);
  }
  const std::string order = Order(orderBy);
  if (!grouping_.ungrouped.empty()) {
    throw Failed(
        Code::NotGrouped,
        fmt::format("A coluna '{}' não está numa função de agregação nem em GROUP BY", grouping_.ungrouped));
  }
  binder_.grouping = around;
  return fmt::format("SELECT {}{}{}{}{}{}{}{}", select_.distinct ? "DISTINCT " : "", ItemList(nested), from,
                     where, groups, having, order, Limit());
}

std::string SelectPrinter::From() {
  std::vector<std::string> sources;
  for (const auto& source : select_.from) sources.push_back(PrintSource(*source, select_.from.size() > 1));
  return sources.empty() ? "" : " FROM " + Joined(sources);
}

std::string SelectPrinter::PrintSource(const Source& source, bool listed) {
  if (!source.left) return source.derived ? PrintDerived(source) : PrintTable(source);
  static constexpr std::string_view kWords[] = {" CROSS JOIN ", " JOIN ", " LEFT JOIN ", " RIGHT JOIN ",
                                                " FULL JOIN "};
  std::string sql = PrintSource(*source.left, false);
  sql += std::string(kWords[static_cast<std::size_t>(source.join)]) + PrintSource(*source.right, false);
  if (source.on) sql += " ON " + binder_.Condition(*source.on, scope_);
  // The store joins a list from left to right, the server each entry by itself first.
  return listed ? "(" + sql + ")" : sql;
}

std::string SelectPrinter::AddSource(const std::string& sql, const std::string& alias,
                                     std::vector<VisibleColumn> columns) {
  for (const VisibleSource& other : scope_.sources) {
    if (SameName(other.alias, alias)) {
      throw Failed(Code::AmbiguousColumn, "O nome '" + alias + "' aparece duas vezes na cláusula FROM");
    }
  }
  if (scope_.sources.size() >= kMostTables)
    throw Failed(Code::TooManyTables, "Há tabelas a mais na cláusula FROM");
  scope_.sources.push_back({alias, std::move(columns)});
  return sql + " AS " + QuoteName(alias);
}

std::vector<VisibleColumn> ColumnsOfRows(const RowTable& table, const std::string& alias) {
  std::vector<VisibleColumn> columns;
  for (const RowTable::Heading& heading : table.headings) {
    columns.push_back(
        {heading.name, heading.type, true, fmt::format("{}.\"c{}\"", QuoteName(alias), columns.size() + 1)});
  }
  return columns;
}

std::string SelectPrinter::PrintTable(const Source& source) {
  const std::string alias = source.alias.empty() ? source.table.name : source.alias;
  if (const Object* object = FindObject(source.table, binder_.Around())) {
    binder_.MarkReads(*object);
    std::vector<VisibleColumn> columns;
    for (const Column& column : object->columns) {
      const std::string name = object->view ? fmt::format("c{}", column.ordinal) : column.name;
      columns.push_back(
          {column.name, column.type, column.nullable, QuoteName(alias) + "." + QuoteName(name)});
    }
    return AddSource(QuoteName(object->name), alias, std::move(columns));
  }
  if (const auto rows = binder_.Around().systemTable(source.table.database, source.table.name)) {
    binder_.MarkOnce();
    return AddSource("(" + RowsSql(*rows) + ")", alias, ColumnsOfRows(*rows, alias));
  }
  throw Failed(Code::NoTable, "Nome de objecto inválido: '" + source.table.name + "'");
}

std::string SelectPrinter::PrintDerived(const Source& source) {
  std::vector<VisibleColumn> columns;
  const std::string sql = binder_.Nested(*source.derived, scope_.outer, columns);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i].sql = fmt::format("{}.\"c{}\"", QuoteName(source.alias), i + 1);
  }
  return AddSource("(" + sql + ")", source.alias, std::move(columns));
}

void SelectPrinter::SetGrouping() {
  grouped_ = !select_.groupBy.empty() || select_.having != nullptr ||
             std::any_of(select_.items.begin(), select_.items.end(),
                         [](const SelectItem& item) { return HoldsAggregate(*item.expr); });
  grouping_.scope = &scope_;
}

std::string SelectPrinter::GroupBy() {
  std::vector<std::string> keys;
  for (const ExprPtr& expr : select_.groupBy) {
    const Bound key = binder_.Scalar(*expr, scope_);
    RequireComparable(key.type);
    grouping_.keys.push_back(key.sql);
    keys.push_back(Collated(key));
  }
  return keys.empty() ? "" : " GROUP BY " + Joined(keys);
}

void SelectPrinter::Items() {
  for (const SelectItem& item : select_.items) {
    if (item.expr->kind == ExprKind::Star) {
      ExpandStar(*item.expr);
      continue;
    }
    std::string name = item.alias;
    Bound value = Item(*item.expr);
    if (name.empty() && item.expr->kind == ExprKind::Name) name = item.expr->names.back();
    if (select_.distinct) RequireComparable(value.type);
    output_.push_back({std::move(name), std::move(value)});
  }
  if (output_.empty()) throw SyntaxError("*", "não há tabela de onde ler colunas");
}

Bound SelectPrinter::Item(const Expr& expr) {
  Bound value = binder_.Scalar(expr, scope_);
  if (value.form == Bound::Form::Slot) value = ExpressionOf(value.sql, value.type);
  return value;
}

void SelectPrinter::ExpandStar(const Expr& star) {
  bool found = false;
  for (const VisibleSource& source : scope_.sources) {
    if (!star.names.empty() && !SameName(source.alias, star.names.back())) continue;
    found = true;
    for (const VisibleColumn& column : source.columns) {
      Bound value = ExpressionOf(column.sql, column.type, column.nullable);
      value.form = Bound::Form::Column;
      if (select_.distinct) RequireComparable(column.type);
      if (grouped_) grouping_.ungrouped = column.name;
      output_.push_back({column.name, std::move(value)});
    }
  }
  if (!found && !star.names.empty())
    throw Failed(Code::NoTable, "Nome de tabela inválido: '" + star.names.back() + "'");
}

std::string SelectPrinter::ItemList(bool nested) const {
  std::vector<std::string> items;
  for (const OutputColumn& column : output_) {
    items.push_back(Collated(column.value) + (nested ? fmt::format(" AS \"c{}\"", items.size() + 1) : ""));
  }
  return Joined(items);
}

std::string SelectPrinter::Order(const std::vector<OrderItem>& orderBy) {
  std::vector<std::string> keys;
  for (const OrderItem& item : orderBy) {
    keys.push_back(OrderKey(*item.expr) + (item.descending ? " DESC" : ""));
  }
  return keys.empty() ? "" : " ORDER BY " + Joined(keys);
}

/// Place of a column that ORDER BY names by its number or by its name, 0 for none.
std::size_t OutputPlace(const Expr& expr, const std::vector<OutputColumn>& output) {
  if (expr.kind == ExprKind::Number) {
    std::size_t place = 0;
    std::from_chars(expr.text.data(), expr.text.data() + expr.text.size(), place);
    if (place < 1 || place > output.size()) {
      throw Failed(Code::NoColumn, "A posição " + expr.text + " de ORDER BY não existe na lista");
    }
    return place;
  }
  if (expr.kind != ExprKind::Name || expr.names.size() != 1) return 0;
  const auto found = std::find_if(output.begin(), output.end(), [&](const OutputColumn& column) {
    return SameName(column.name, expr.names[0]);
  });
  return found == output.end() ? 0 : static_cast<std::size_t>(found - output.begin()) + 1;
}

std::string SelectPrinter::OrderKey(const Expr& expr) {
  if (const std::size_t place = OutputPlace(expr, output_)) {
    RequireComparable(output_[place - 1].value.type);
    return std::to_string(place);
  }
  const Bound key = binder_.Scalar(expr, scope_);
  RequireComparable(key.type);
  if (!select_.distinct) return Collated(key);
  for (std::size_t i = 0; i < output_.size(); ++i) {
    if (output_[i].value.sql == key.sql) return std::to_string(i + 1);
  }
  throw Failed(Code::NotGrouped, "Com DISTINCT, ORDER BY só pode usar o que está na lista de colunas");
}

std::string SelectPrinter::Limit() {
  if (!select_.top) return "";
  const Bound count = binder_.ConvertTo(binder_.Scalar(*select_.top, Scope{}), kBigInt);
  return " LIMIT max(" + count.sql + ",0)";
}

/// A SELECT of a union, its columns brought to the types that all of them share.
struct UnionPart {
  std::string sql;
  std::vector<OutputColumn> output;
};

class QueryPrinter {
 public:
  QueryPrinter(Binder& binder, const Query& query, const Scope* outer)
      : binder_(binder), query_(query), outer_(outer) {}

  std::string Run(bool nested) {
    if (query_.selects.size() > 1) return Union();
    SelectPrinter printer(binder_, query_.selects[0], outer_);
    std::string sql = printer.Run(nested, query_.orderBy);
    output_ = std::move(printer.Output());
    return sql;
  }
  std::vector<OutputColumn>& Output() { return output_; }

 private:
  std::string Union();
  void Merge(const std::vector<OutputColumn>& part);
  std::string Part(const UnionPart& part);
  std::string Order();

  Binder& binder_;
  const Query& query_;
  const Scope* outer_;
  std::vector<OutputColumn> output_;
};

std::string QueryPrinter::Union() {
  std::vector<UnionPart> parts;
  for (const Select& select : query_.selects) {
    SelectPrinter printer(binder_, select, outer_);
    UnionPart part{printer.Run(true, {}), {}};
    part.output = std::move(printer.Output());
    Merge(part.output);
    parts.push_back(std::move(part));
  }
  std::string sql = Part(parts[0]);
  for (std::size_t i = 1; i < parts.size(); ++i) {
    sql += (query_.unionAll[i - 1] ? " UNION ALL " : " UNION ") + Part(parts[i]);
  }
  return sql + Order();
}

void QueryPrinter::Merge(const std::vector<OutputColumn>& part) {
  if (output_.empty()) {
    output_ = part;
    return;
  }
  if (part.size() != output_.size()) {
    throw Failed(Code::ColumnCount, "As consultas unidas por UNION têm números de colunas diferentes");
  }
  for (std::size_t i = 0; i < part.size(); ++i) {
    Bound& merged = output_[i].value;
    if (part[i].value.null) continue;
    merged.type = merged.null ? part[i].value.type : CommonType(merged.type, part[i].value.type);
    merged.null = false;
  }
}

std::string QueryPrinter::Part(const UnionPart& part) {
  std::vector<std::string> items;
  for (std::size_t i = 0; i < part.output.size(); ++i) {
    Bound value = ExpressionOf(fmt::format("\"c{}\"", i + 1), part.output[i].value.type);
    if (part.output[i].value.null) value.type = output_[i].value.type;
    value = binder_.ConvertTo(std::move(value), output_[i].value.type);
    items.push_back(fmt::format("{} AS \"c{}\"", Collated(value), i + 1));
  }
  return fmt::format("SELECT {} FROM ({})", Joined(items), part.sql);
}

std::string QueryPrinter::Order() {
  std::vector<std::string> keys;
  for (const OrderItem& item : query_.orderBy) {
    const std::size_t place = OutputPlace(*item.expr, output_);
    if (place == 0)
      throw Failed(Code::NoColumn, "Com UNION, ORDER BY só pode usar colunas da primeira consulta");
    keys.push_back(std::to_string(place) + (item.descending ? " DESC" : ""));
  }
  return keys.empty() ? "" : " ORDER BY " + Joined(keys);
}

Field FieldOf(const std::string& name, const ColumnType& type) {
  return {name, type.base, type.length, type.precision, type.scale};
}

}  // namespace

std::string Binder::Nested(const Query& query, const Scope* outer, std::vector<VisibleColumn>& output) {
  QueryPrinter printer(*this, query, outer);
  std::string sql = printer.Run(true);
  for (OutputColumn& column : printer.Output()) {
    output.push_back({std::move(column.name), column.value.type, true, {}});
  }
  return sql;
}

Translation TranslateQuery(const Query& query, const Surroundings& around, const ParameterTypes& parameters) {
  Binder binder(around, parameters);
  QueryPrinter printer(binder, query, nullptr);
  Translation translation;
  translation.sql = printer.Run(false);
  for (const OutputColumn& column : printer.Output()) {
    translation.fields.push_back(FieldOf(column.name, column.value.type));
    translation.types.push_back(column.value.type);
  }
  translation.slots = std::move(binder.Slots());
  translation.once = binder.Once();
  translation.reads = binder.Reads();
  return translation;
}

Translation TranslateRows(const RowTable& table) {
  Translation translation;
  translation.sql = RowsSql(table);
  for (const RowTable::Heading& heading : table.headings) {
    translation.fields.push_back(FieldOf(heading.name, heading.type));
    translation.types.push_back(heading.type);
  }
  translation.once = true;
  return translation;
}

}  // namespace korvel::data::embedded
