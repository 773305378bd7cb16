#include "data/value.h"

#include <fmt/format.h>

namespace korvel::data {
namespace {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace

Parameter::Parameter(const Value& value) {
  std::visit(Overloaded{[this](const std::string& text) { emplace<std::string_view>(text); },
                        [this](const auto& other) { *this = Parameter(other); }},
             static_cast<const Value::variant&>(value));
}

std::string ToText(const Value& value) {
  return std::visit(Overloaded{[](Null) { return std::string(); },
                               [](std::int64_t number) { return std::to_string(number); },
                               [](Currency money) { return money.ToText(); },
                               [](double number) { return fmt::format("{}", number); },
                               [](const DateTime& date) { return date.FullText(); },
                               [](const std::string& text) { return text; }},
                    static_cast<const Value::variant&>(value));
}

}  // namespace korvel::data
