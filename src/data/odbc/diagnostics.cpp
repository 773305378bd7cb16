#include "data/odbc/diagnostics.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "data/native_errors.h"

namespace korvel::data::odbc {
namespace {

struct StateMeaning {
  std::string_view prefix;
  Failure failure;
};

/// What a driver's own state tells where the server's number is not known. First match wins.
constexpr std::array kStates{
    StateMeaning{"HYT", Failure::Timeout},      StateMeaning{"28", Failure::WrongLogin},
    StateMeaning{"23", Failure::Integrity},     StateMeaning{"22001", Failure::Truncation},
    StateMeaning{"22003", Failure::Truncation}, StateMeaning{"22", Failure::Conversion},
    StateMeaning{"07006", Failure::Conversion}, StateMeaning{"42S02", Failure::NoTable},
    StateMeaning{"42", Failure::Statement},     StateMeaning{"37", Failure::Statement},
    StateMeaning{"07", Failure::Statement},     StateMeaning{"24", Failure::Busy},
};

/// Lower tells more: known numbers, then records that are errors, those with a number first, then mere warnings.
int Rank(const Diagnostic& record) {
  if (record.state.starts_with("HYT")) return 0;
  if (record.state.starts_with("01")) return 3;
  return record.native != 0 ? 1 : 2;
}

bool TellsMore(const Diagnostic& a, const Diagnostic& b) {
  const NativeError* knownA = FindNativeError(a.native);
  const NativeError* knownB = FindNativeError(b.native);
  if (knownA && knownB) return knownA < knownB;
  if (knownA || knownB) return knownA != nullptr;
  return Rank(a) < Rank(b);
}

Failure Meaning(const Diagnostic& record) {
  if (const NativeError* known = FindNativeError(record.native)) return known->failure;
  const auto found = std::find_if(kStates.begin(), kStates.end(), [&](const StateMeaning& state) {
    return record.state.starts_with(state.prefix);
  });
  return found != kStates.end() ? found->failure : Failure::NoServer;
}

/// The message without the "[driver][server]" marks in front of it.
std::string_view WithoutMarks(std::string_view text) {
  while (text.starts_with('[') && text.find(']') != std::string_view::npos)
    text.remove_prefix(text.find(']') + 1);
  return text;
}

}  // namespace

Error ToError(const std::vector<Diagnostic>& records, Stage stage) {
  if (records.empty()) return {Failure::NoServer, "O servidor não respondeu"};
  const Diagnostic& told = *std::min_element(records.begin(), records.end(), TellsMore);
  Failure failure = Meaning(told);
  if (stage == Stage::Connecting && failure != Failure::WrongLogin) failure = Failure::NoServer;
  return {failure, told.native, told.state, std::string(WithoutMarks(told.text))};
}

}  // namespace korvel::data::odbc
