#include "data/embedded/slots.h"

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

struct Given {
  Stored value;
  ColumnType type;
};

constexpr ColumnType kIdentityType{Type::Numeric, 0, 38, 0};

Given ValueOf(const Slot& slot, const SlotValues& values) {
  const SessionValues& session = values.session;
  switch (slot.source) {
    case Slot::Source::RowCount:
      return {session.rowCount, kInt};
    case Slot::Source::Identity:
    case Slot::Source::ScopeIdentity:
      return {View(session.identity), kIdentityType};
    case Slot::Source::TransactionCount:
      return {session.transactionCount, kInt};
    case Slot::Source::Now:
      return {TicksNow(), kDateTime};
    case Slot::Source::Login:
      return {std::string_view(session.login), Varchar(128)};
    case Slot::Source::Database:
      return {std::string_view(session.database), Varchar(128)};
    case Slot::Source::LastError:
      return {session.lastError, kInt};
    default:
      break;
  }
  const auto index = static_cast<std::size_t>(slot.parameter);
  if (slot.source == Slot::Source::Variable) {
    return {View(values.variables[index].value), values.variables[index].type};
  }
  const Parameter& parameter = values.parameters[index];
  return {FromParameter(parameter), ParameterType(parameter).value_or(slot.type)};
}

}  // namespace

void BindSlots(Prepared& statement, const std::vector<Slot>& slots, const SlotValues& values,
               std::vector<OwnedStored>& owned, int before) {
  owned.clear();
  owned.reserve(slots.size());
  std::string scratch;
  int number = before;
  for (const Slot& slot : slots) {
    const Given given = ValueOf(slot, values);
    if (!slot.notNull.empty() && std::holds_alternative<Null>(given.value)) {
      throw Failed(
          Code::NullRefused,
          fmt::format("Não é possível inserir o valor NULL na coluna '{}'; a coluna não aceita nulos",
                      slot.notNull));
    }
    owned.push_back(Own(Convert(given.value, given.type, slot.type, slot.mode, slot.style, scratch)));
    statement.Bind(++number, View(owned.back()));
  }
}

}  // namespace korvel::data::embedded
