#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "data/embedded/binder.h"
#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

/// One call while it is bound.
struct Site {
  Binder& binder;
  const Expr& call;
  const Scope& scope;

  std::size_t Count() const { return call.args.size(); }
  Bound Value(std::size_t i) const { return binder.Scalar(*call.args[i], scope); }
  Bound Text(std::size_t i) const { return binder.TextArgument(*call.args[i], scope); }
  std::string Whole(std::size_t i) const { return binder.ConvertTo(Value(i), kBigInt).sql; }
};

ColumnType AsVarchar(const ColumnType& type) {
  return type.base == Type::Text ? Varchar(kMaxVarchar) : type;
}

Bound IsNull(const Site& site) {
  Bound first = site.Value(0);
  Bound second = site.Value(1);
  if (first.null) return second;
  const ColumnType type = first.type;
  const bool nullable = second.nullable;
  first = site.binder.ConvertTo(std::move(first), type);
  second = site.binder.ConvertTo(std::move(second), type);
  return ExpressionOf(fmt::format("ifnull({},{})", first.sql, second.sql), type, nullable);
}

Bound Coalesce(const Site& site) {
  std::vector<Bound> values;
  ColumnType type = kInt;
  bool typed = false;
  for (std::size_t i = 0; i < site.Count(); ++i) {
    values.push_back(site.Value(i));
    if (values.back().null) continue;
    type = typed ? CommonType(type, values.back().type) : values.back().type;
    typed = true;
  }
  std::string sql = "coalesce(";
  bool nullable = true;
  for (std::size_t i = 0; i < values.size(); ++i) {
    nullable = nullable && values[i].nullable;
    sql += (i == 0 ? "" : ",") + site.binder.ConvertTo(std::move(values[i]), type).sql;
  }
  return ExpressionOf(sql + ")", type, nullable);
}

Bound NullIf(const Site& site) {
  Bound first = site.Value(0);
  const ColumnType type = first.type;
  const std::string left = Collated(first);
  const Bound second = site.binder.ConvertTo(site.Value(1), type);
  return ExpressionOf(fmt::format("nullif({},{})", left, second.sql), type);
}

Bound Substring(const Site& site) {
  const Bound text = site.Text(0);
  return ExpressionOf(fmt::format("t_substring({},{},{})", text.sql, site.Whole(1), site.Whole(2)),
                      AsVarchar(text.type));
}

Bound Left(const Site& site) {
  const Bound text = site.Text(0);
  return ExpressionOf(fmt::format("t_substring({},1,{})", text.sql, site.Whole(1)), AsVarchar(text.type));
}

Bound Right(const Site& site) {
  const Bound text = site.Text(0);
  return ExpressionOf(fmt::format("t_right({},{})", text.sql, site.Whole(1)), AsVarchar(text.type));
}

template <const char* function>
Bound TextToText(const Site& site) {
  const Bound text = site.Text(0);
  return ExpressionOf(fmt::format("{}({})", function, text.sql), AsVarchar(text.type), text.nullable);
}
template <const char* function>
Bound TextToInt(const Site& site) {
  return ExpressionOf(fmt::format("{}({})", function, site.Text(0).sql), kInt);
}
constexpr char kUpper[] = "t_upper";
constexpr char kLower[] = "t_lower";
constexpr char kTrimLeft[] = "t_ltrim";
constexpr char kTrimRight[] = "t_rtrim";
constexpr char kLen[] = "t_len";
constexpr char kCharacters[] = "t_characters";

Bound Replace(const Site& site) {
  const Bound text = site.Text(0);
  return ExpressionOf(fmt::format("t_replace({},{},{})", text.sql, site.Text(1).sql, site.Text(2).sql),
                      Varchar(kMaxVarchar));
}

Bound CharIndex(const Site& site) {
  const std::string start = site.Count() > 2 ? site.Whole(2) : "1";
  return ExpressionOf(fmt::format("t_find({},{},{})", site.Text(0).sql, site.Text(1).sql, start), kInt);
}

Bound Replicate(const Site& site) {
  return ExpressionOf(fmt::format("t_replicate({},{})", site.Text(0).sql, site.Whole(1)),
                      Varchar(kMaxVarchar));
}

Bound Space(const Site& site) {
  return ExpressionOf(fmt::format("t_replicate(' ',{})", site.Whole(0)), Varchar(kMaxVarchar));
}

Bound Number(const Site& site, std::size_t i) {
  Bound value = site.Value(i);
  return IsText(value.type) ? site.binder.ConvertTo(std::move(value), kFloat) : value;
}

Bound Abs(const Site& site) {
  const Bound value = Number(site, 0);
  if (value.type.base == Type::Float) return ExpressionOf(fmt::format("abs({})", value.sql), kFloat);
  return ExpressionOf(fmt::format("t_abs({},{})", value.sql, Pack(value.type)), value.type, value.nullable);
}

Bound RoundTo(const Site& site) {
  const Bound value = Number(site, 0);
  const std::string places = site.Whole(1);
  if (value.type.base == Type::Float)
    return ExpressionOf(fmt::format("round({},{})", value.sql, places), kFloat);
  return ExpressionOf(fmt::format("t_round({},{},{})", value.sql, places, Pack(value.type)), value.type);
}

template <int part>
Bound DatePart(const Site& site) {
  const Bound moment = site.binder.ConvertTo(site.Value(0), kDateTime);
  return ExpressionOf(fmt::format("t_datepart({},{})", moment.sql, part), kInt);
}

constexpr int kNameLength = 128;

template <Slot::Source source>
Bound OfSession(const Site& site) {
  const bool text = source == Slot::Source::Login || source == Slot::Source::Database;
  const ColumnType type = source == Slot::Source::Now             ? kDateTime
                          : source == Slot::Source::ScopeIdentity ? Numeric(38, 0)
                          : text                                  ? Varchar(kNameLength)
                                                                  : kInt;
  return site.binder.SlotOf(source, type);
}

/// What the server tells of itself and of the session (server_facts.h), with up to two texts as arguments.
template <bool number>
Bound Fact(const Site& site) {
  std::string arguments;
  for (std::size_t i = 0; i < 2; ++i) arguments += "," + (i < site.Count() ? site.Text(i).sql : "''");
  return ExpressionOf(fmt::format("t_fact('{}'{})", site.call.text, arguments),
                      number ? kInt : Varchar(kNameLength));
}

Bound NameOfObject(const Site& site) {
  return ExpressionOf(fmt::format("t_object_name({})", site.Whole(0)), Varchar(kNameLength));
}

Bound ObjectId(const Site& site) {
  const Bound name = site.Text(0);
  const auto* text = std::get_if<std::string>(&name.constant);
  const auto id = text == nullptr ? std::nullopt : site.binder.Around().catalogue->IdOf(*text);
  site.binder.MarkOnce();
  return id ? ConstantOf(*id, kInt) : NullOf(kInt);
}

/// The argument of an aggregate, in which names need not be grouped.
Bound Aggregated(const Site& site) {
  Binder::Grouping* grouping = site.binder.grouping;
  if (grouping == nullptr || grouping->inside) {
    throw Failed(Code::Aggregate,
                 fmt::format("A função de agregação {} não pode ser usada aqui", site.call.text));
  }
  grouping->inside = true;
  Bound value = site.call.args[0]->kind == ExprKind::Star ? ExpressionOf("*", kInt) : site.Value(0);
  grouping->inside = false;
  return value;
}

std::string AggregateSql(const Site& site, std::string_view function, const Bound& argument) {
  return fmt::format("{}({}{})", function, site.call.distinct ? "DISTINCT " : "", Collated(argument));
}

Bound Count(const Site& site) {
  return ExpressionOf(AggregateSql(site, "count", Aggregated(site)), kInt, false);
}

template <const char* function>
Bound Extreme(const Site& site) {
  const Bound value = Aggregated(site);
  RequireComparable(value.type);
  return ExpressionOf(AggregateSql(site, function, value), value.type);
}
constexpr char kMin[] = "min";
constexpr char kMax[] = "max";

void RequireNumber(const Site& site, const ColumnType& type) {
  if (IsText(type) || IsDate(type) || type.base == Type::Bit) {
    throw Failed(Code::OperandType,
                 fmt::format("O tipo {} não serve para a função {}", TypeName(type.base), site.call.text));
  }
}

/// Sums of small whole numbers are int, of numeric have as many digits as there are, of others keep the type.
ColumnType SumType(const ColumnType& type) {
  if (type.base == Type::SmallInt) return kInt;
  return type.base == Type::Numeric ? Numeric(38, type.scale) : type;
}

Bound Sum(const Site& site) {
  const Bound value = Aggregated(site);
  RequireNumber(site, value.type);
  const ColumnType type = SumType(value.type);
  const std::string sql = AggregateSql(site, "sum", value);
  if (type.base != Type::Int) return ExpressionOf(sql, type);
  return site.binder.ConvertTo(ExpressionOf(sql, kBigInt), type);
}

Bound Average(const Site& site) {
  const Bound value = Aggregated(site);
  RequireNumber(site, value.type);
  if (value.type.base == Type::Float) return ExpressionOf(AggregateSql(site, "avg", value), kFloat);
  ColumnType type = SumType(value.type);
  constexpr int kLeastScale = 6;
  if (type.base == Type::Numeric) type.scale = std::max(type.scale, kLeastScale);
  return ExpressionOf(
      fmt::format("t_div({},{},{},{})", AggregateSql(site, "sum", value), AggregateSql(site, "count", value),
                  ScaleOf(type) - ScaleOf(value.type), Pack(type)),
      type);
}

struct Function {
  std::string_view name;
  std::size_t least;
  std::size_t most;
  Bound (*bind)(const Site&);
  bool aggregate = false;
};

constexpr std::size_t kAny = 100;

constexpr Function kFunctions[] = {
    {"isnull", 2, 2, IsNull},
    {"coalesce", 2, kAny, Coalesce},
    {"nullif", 2, 2, NullIf},
    {"substring", 3, 3, Substring},
    {"left", 2, 2, Left},
    {"right", 2, 2, Right},
    {"upper", 1, 1, TextToText<kUpper>},
    {"lower", 1, 1, TextToText<kLower>},
    {"ltrim", 1, 1, TextToText<kTrimLeft>},
    {"rtrim", 1, 1, TextToText<kTrimRight>},
    {"len", 1, 1, TextToInt<kLen>},
    {"datalength", 1, 1, TextToInt<kCharacters>},
    {"replace", 3, 3, Replace},
    {"charindex", 2, 3, CharIndex},
    {"replicate", 2, 2, Replicate},
    {"space", 1, 1, Space},
    {"abs", 1, 1, Abs},
    {"round", 2, 2, RoundTo},
    {"year", 1, 1, DatePart<0>},
    {"month", 1, 1, DatePart<1>},
    {"day", 1, 1, DatePart<2>},
    {"getdate", 0, 0, OfSession<Slot::Source::Now>},
    {"scope_identity", 0, 0, OfSession<Slot::Source::ScopeIdentity>},
    {"suser_sname", 0, 0, OfSession<Slot::Source::Login>},
    {"db_name", 0, 0, OfSession<Slot::Source::Database>},
    {"is_srvrolemember", 1, 2, Fact<true>},
    {"is_member", 1, 1, Fact<true>},
    {"user_name", 0, 0, Fact<false>},
    {"host_name", 0, 0, Fact<false>},
    {"app_name", 0, 0, Fact<false>},
    {"databasepropertyex", 2, 2, Fact<false>},
    {"object_name", 1, 1, NameOfObject},
    {"object_id", 1, 1, ObjectId},
    {"count", 1, 1, Count, true},
    {"sum", 1, 1, Sum, true},
    {"avg", 1, 1, Average, true},
    {"min", 1, 1, Extreme<kMin>, true},
    {"max", 1, 1, Extreme<kMax>, true},
};

const Function* FindFunction(std::string_view name) {
  const auto* found = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                   [&](const Function& f) { return f.name == name; });
  return found == std::end(kFunctions) ? nullptr : found;
}

}  // namespace

Bound BindFunction(Binder& binder, const Expr& call, const Scope& scope) {
  const Function* function = FindFunction(call.text);
  if (function == nullptr)
    throw Failed(Code::NoFunction, "A função '" + call.text + "' não existe neste servidor");
  const std::size_t count = call.args.size();
  if (count < function->least || count > function->most || (call.distinct && !function->aggregate)) {
    throw Failed(Code::ColumnCount, "Número de argumentos errado na função '" + call.text + "'");
  }
  return function->bind({binder, call, scope});
}

bool IsAggregate(std::string_view function) {
  const Function* found = FindFunction(function);
  return found != nullptr && found->aggregate;
}

bool HoldsAggregate(const Expr& expr) {
  if (expr.kind == ExprKind::Call && IsAggregate(expr.text)) return true;
  return std::any_of(expr.args.begin(), expr.args.end(),
                     [](const ExprPtr& arg) { return HoldsAggregate(*arg); });
}

}  // namespace korvel::data::embedded
