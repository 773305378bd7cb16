#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korvel::billing {

/// Numbers that are missing between two documents, both ends included.
struct NumberGap {
  std::int64_t first = 0;
  std::int64_t last = 0;
};

/// Follows the numbering of the documents of one class and finds its gaps. The first document of a type in a year
/// opens none, even if its number is not the first.
class NumberingWalk {
 public:
  /// Takes the next document and gives the gap in front of it.
  std::optional<NumberGap> Step(std::string_view ano, std::string_view tipo, std::string_view numero);

 private:
  void Follow(std::string_view ano, std::string_view tipo, std::int64_t number);

  std::string ultimoAno_;
  std::string ultimoTipo_;
  std::int64_t ultimoNumero_ = 0;
  bool started_ = false;
};

/// The digits in front; 0 when there are none.
std::int64_t DocumentNumber(std::string_view numero);
/// A number as the documents bear it: eight digits.
std::string DocumentNumberText(std::int64_t number);

}  // namespace korvel::billing
