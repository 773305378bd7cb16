#include "data/embedded/errors.h"

#include <fmt/format.h>

#include "data/native_errors.h"

namespace korvel::data::embedded {

Error Failed(Code code, const std::string& text) {
  const int number = static_cast<int>(code);
  const NativeError* known = FindNativeError(number);
  return Error(known ? known->failure : Failure::Statement, number,
               std::string(known ? known->sqlState : "42000"), text);
}

Error KilledError() {
  return Failed(Code::Killed, "A ligação foi terminada por outra ligação");
}

Error OutOfTime() {
  return Error(Failure::Timeout, -2, "HYT00", "O tempo limite da instrução esgotou-se");
}

Error SyntaxError(std::string_view near, std::string_view excerpt) {
  return Failed(Code::Syntax,
                fmt::format("Sintaxe incorrecta perto de '{}', no texto \"{}\"", near, excerpt));
}

}  // namespace korvel::data::embedded
