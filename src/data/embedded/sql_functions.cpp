#include "data/embedded/sql_functions.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <sqlite3.h>

#include "data/collation.h"
#include "data/collation_weights.h"
#include "data/embedded/arithmetic.h"
#include "data/embedded/errors.h"
#include "data/embedded/store.h"
#include "data/embedded/text_functions.h"

namespace korvel::data::embedded {
namespace {

/// The arguments of one call and the place of its result.
class Call {
 public:
  Call(sqlite3_context* context, int count, sqlite3_value** values)
      : context_(context), count_(count), values_(values) {}

  int Count() const { return count_; }
  bool IsNull(int i) const { return sqlite3_value_type(values_[i]) == SQLITE_NULL; }
  bool AnyNull(int first) const {
    for (int i = 0; i < first; ++i) {
      if (IsNull(i)) return true;
    }
    return false;
  }
  std::int64_t Integer(int i) const { return sqlite3_value_int64(values_[i]); }
  double Number(int i) const { return sqlite3_value_double(values_[i]); }
  std::string_view Text(int i) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(values_[i]));
    return {text == nullptr ? "" : text, static_cast<std::size_t>(sqlite3_value_bytes(values_[i]))};
  }
  ColumnType Packed(int i) const { return Unpack(Integer(i)); }

  Stored Get(int i) const {
    switch (sqlite3_value_type(values_[i])) {
      case SQLITE_NULL:
        return Null{};
      case SQLITE_INTEGER:
        return Integer(i);
      case SQLITE_FLOAT:
        return Number(i);
      default:
        return Text(i);
    }
  }

  /// The argument itself is the result.
  void Pass(int i) const { sqlite3_result_value(context_, values_[i]); }
  void Give(Null) const { sqlite3_result_null(context_); }
  void Give(std::int64_t number) const { sqlite3_result_int64(context_, number); }
  void Give(double number) const { sqlite3_result_double(context_, number); }
  void Give(std::string_view text) const {
    sqlite3_result_text64(context_, text.data() == nullptr ? "" : text.data(), text.size(), SQLITE_TRANSIENT,
                          SQLITE_UTF8);
  }
  void Give(const Stored& value) const {
    std::visit([this](const auto& held) { Give(held); }, value);
  }

  FunctionContext& Shared() const { return *static_cast<FunctionContext*>(sqlite3_user_data(context_)); }

 private:
  sqlite3_context* context_;
  int count_;
  sqlite3_value** values_;
};

using Body = void (*)(const Call&);

template <Body body>
void Guarded(sqlite3_context* context, int count, sqlite3_value** values) {
  const Call call(context, count, values);
  try {
    body(call);
  } catch (const std::exception& failure) {
    call.Shared().raised = std::current_exception();
    sqlite3_result_error(context, failure.what(), -1);
  }
}

/// As Guarded, for functions that are NULL when one of their first `Needed` arguments is.
template <int Needed, Body body>
void Strict(const Call& call) {
  if (call.AnyNull(std::min(Needed, call.Count()))) {
    call.Give(Null{});
  } else {
    body(call);
  }
}

void Conv(const Call& call) {
  const std::int64_t options = call.Integer(3);
  std::string scratch;
  call.Give(Convert(call.Get(0), call.Packed(1), call.Packed(2),
                    (options & 1) != 0 ? ConvertMode::Assign : ConvertMode::Cast,
                    static_cast<int>(options >> 1) - 1, scratch));
}

void NotNull(const Call& call) {
  if (call.IsNull(0)) {
    throw Failed(Code::NullRefused,
                 fmt::format("Não é possível inserir o valor NULL na coluna '{}'; a coluna não aceita nulos",
                             call.Text(1)));
  }
  call.Pass(0);
}

void AddCall(const Call& c) {
  c.Give(Add(c.Integer(0), c.Integer(1), c.Packed(2)));
}
void SubCall(const Call& c) {
  c.Give(Subtract(c.Integer(0), c.Integer(1), c.Packed(2)));
}
void MulCall(const Call& c) {
  c.Give(Multiply(c.Integer(0), c.Integer(1), static_cast<int>(c.Integer(2)), c.Packed(3)));
}
void DivCall(const Call& c) {
  c.Give(Divide(c.Integer(0), c.Integer(1), static_cast<int>(c.Integer(2)), c.Packed(3)));
}
void ModCall(const Call& c) {
  c.Give(Remainder(c.Integer(0), c.Integer(1)));
}
void FloatDivCall(const Call& c) {
  c.Give(Divide(c.Number(0), c.Number(1)));
}
void AbsCall(const Call& c) {
  const std::int64_t units = c.Integer(0);
  c.Give(units < 0 ? Subtract(0, units, c.Packed(1)) : units);
}
void RoundCall(const Call& c) {
  c.Give(Round(c.Integer(0), static_cast<int>(std::clamp<std::int64_t>(c.Integer(1), -40, 40)), c.Packed(2)));
}

void LikeCall(const Call& c) {
  char32_t escape = 0;
  if (c.Count() > 2 && !c.Text(2).empty()) {
    std::size_t at = 0;
    escape = NextCharacter(c.Text(2), at);
  }
  c.Give(std::int64_t{Like(c.Text(0), c.Text(1), escape)});
}

void LenCall(const Call& c) {
  c.Give(Length(c.Text(0)));
}
void CharactersCall(const Call& c) {
  c.Give(static_cast<std::int64_t>(CountCharacters(c.Text(0))));
}
void SubstringCall(const Call& c) {
  c.Give(Substring(c.Text(0), c.Integer(1), c.Integer(2)));
}
void RightCall(const Call& c) {
  c.Give(Rightmost(c.Text(0), c.Integer(1)));
}
void TrimLeftCall(const Call& c) {
  c.Give(TrimLeft(c.Text(0)));
}
void TrimRightCall(const Call& c) {
  c.Give(TrimRight(c.Text(0)));
}
void UpperCall(const Call& c) {
  c.Give(std::string_view(ToUpper(c.Text(0))));
}
void LowerCall(const Call& c) {
  c.Give(std::string_view(ToLower(c.Text(0))));
}
void ReplaceCall(const Call& c) {
  c.Give(std::string_view(Replace(c.Text(0), c.Text(1), c.Text(2))));
}
void FindCall(const Call& c) {
  c.Give(Find(c.Text(0), c.Text(1), c.Integer(2)));
}

void ReplicateCall(const Call& c) {
  const std::string_view text = c.Text(0);
  const std::int64_t wanted = std::clamp<std::int64_t>(c.Integer(1), 0, kMaxVarchar);
  std::string repeated;
  for (std::int64_t i = 0; i < wanted && repeated.size() < kMaxVarchar; ++i) repeated += text;
  c.Give(FirstCharacters(repeated, kMaxVarchar));
}

/// 0 year, 1 month, 2 day.
void DatePartCall(const Call& c) {
  const DateTime moment = DateFromTicks(c.Integer(0));
  const int parts[] = {moment.year, moment.month, moment.day};
  c.Give(std::int64_t{parts[std::clamp<std::int64_t>(c.Integer(1), 0, 2)]});
}

void ObjectNameCall(const Call& c) {
  const auto& find = c.Shared().objectName;
  const std::string name = find ? find(c.Integer(0)) : std::string();
  if (name.empty()) {
    c.Give(Null{});
  } else {
    c.Give(std::string_view(name));
  }
}

void FactCall(const Call& c) {
  if (!c.Shared().serverFact) return c.Give(Null{});
  const OwnedStored fact = c.Shared().serverFact(c.Text(0), c.Text(1), c.Text(2));
  c.Give(View(fact));
}

struct Function {
  const char* name;
  int arguments;
  void (*call)(sqlite3_context*, int, sqlite3_value**);
};

constexpr Function kFunctions[] = {
    {"t_conv", 4, Guarded<Conv>},
    {"t_notnull", 2, Guarded<NotNull>},
    {"t_add", 3, Guarded<Strict<2, AddCall>>},
    {"t_sub", 3, Guarded<Strict<2, SubCall>>},
    {"t_mul", 4, Guarded<Strict<2, MulCall>>},
    {"t_div", 4, Guarded<Strict<2, DivCall>>},
    {"t_mod", 2, Guarded<Strict<2, ModCall>>},
    {"t_fdiv", 2, Guarded<Strict<2, FloatDivCall>>},
    {"t_abs", 2, Guarded<Strict<1, AbsCall>>},
    {"t_round", 3, Guarded<Strict<2, RoundCall>>},
    {"t_like", 2, Guarded<Strict<2, LikeCall>>},
    {"t_like", 3, Guarded<Strict<3, LikeCall>>},
    {"t_len", 1, Guarded<Strict<1, LenCall>>},
    {"t_characters", 1, Guarded<Strict<1, CharactersCall>>},
    {"t_substring", 3, Guarded<Strict<3, SubstringCall>>},
    {"t_right", 2, Guarded<Strict<2, RightCall>>},
    {"t_ltrim", 1, Guarded<Strict<1, TrimLeftCall>>},
    {"t_rtrim", 1, Guarded<Strict<1, TrimRightCall>>},
    {"t_upper", 1, Guarded<Strict<1, UpperCall>>},
    {"t_lower", 1, Guarded<Strict<1, LowerCall>>},
    {"t_replace", 3, Guarded<Strict<3, ReplaceCall>>},
    {"t_find", 3, Guarded<Strict<3, FindCall>>},
    {"t_replicate", 2, Guarded<Strict<2, ReplicateCall>>},
    {"t_datepart", 2, Guarded<Strict<2, DatePartCall>>},
};

int CompareTexts(void*, int sizeA, const void* a, int sizeB, const void* b) {
  return Collate({static_cast<const char*>(a), static_cast<std::size_t>(sizeA)},
                 {static_cast<const char*>(b), static_cast<std::size_t>(sizeB)});
}

void Register(Store& store, const Function& function, int flags) {
  const int result =
      sqlite3_create_function_v2(store.Raw(), function.name, function.arguments, SQLITE_UTF8 | flags,
                                 &store.Functions(), function.call, nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) store.Fail(result);
}

}  // namespace

void RegisterFunctions(Store& store) {
  const int result = sqlite3_create_collation_v2(store.Raw(), std::string(kCollation).c_str(), SQLITE_UTF8,
                                                 nullptr, CompareTexts, nullptr);
  if (result != SQLITE_OK) store.Fail(result);
  for (const Function& function : kFunctions)
    Register(store, function, SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS);
  Register(store, {"t_fact", 3, Guarded<Strict<3, FactCall>>}, 0);
  Register(store, {"t_object_name", 1, Guarded<Strict<1, ObjectNameCall>>}, 0);
}

}  // namespace korvel::data::embedded
