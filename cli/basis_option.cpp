#include "cli/basis_option.h"

#include <fmt/format.h>

#include "cli/failures.h"
#include "toolkit/text.h"

namespace korvel::cli {

void BasisOption::Declare(CLI::App& app) {
  app.add_option("--base", text_, "C contabilidade, F facturação, I integrados")
      ->required()
      ->type_name("C|F|I");
}

periods::Basis BasisOption::Get() const {
  const std::string letter = toolkit::Upper(toolkit::Trim(text_));
  if (letter.empty()) throw Refusal("Deve primeiro criar um registo nas Definições da Empresa ()");
  if (letter != "C" && letter != "F" && letter != "I") {
    throw UsageError(fmt::format("A opção --base aceita C, F ou I, não \"{}\".", text_));
  }
  return static_cast<periods::Basis>(letter.front());
}

}  // namespace korvel::cli
