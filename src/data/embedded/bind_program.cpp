#include <utility>

#include "data/embedded/binder.h"

namespace korvel::data::embedded {
namespace {

Translation OneValue(Binder& binder, const std::string& sql, const ColumnType& type) {
  Translation translation;
  translation.sql = "SELECT " + sql;
  translation.types = {type};
  translation.slots = std::move(binder.Slots());
  translation.once = binder.Once();
  translation.reads = binder.Reads();
  return translation;
}

}  // namespace

Translation TranslateValue(const Expr& expr, const Surroundings& around, const ParameterTypes& parameters) {
  Binder binder(around, parameters);
  const Bound value = binder.Scalar(expr, Scope{});
  return OneValue(binder, value.sql, value.type);
}

Translation TranslateCondition(const Expr& condition, const Surroundings& around,
                               const ParameterTypes& parameters) {
  Binder binder(around, parameters);
  return OneValue(binder, binder.Condition(condition, Scope{}), kInt);
}

}  // namespace korvel::data::embedded
