#include "cli/password_option.h"

#include <fmt/format.h>

#include <fstream>

#include "cli/failures.h"

namespace korvel::cli {

namespace {

std::string FirstLine(const std::string& file) {
  std::ifstream in(file);
  std::string line;
  if (!in || (!std::getline(in, line) && !in.eof())) {
    throw Refusal(fmt::format("Não foi possível ler a password do ficheiro {}.", file));
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

}  // namespace

void PasswordOption::Declare(CLI::App& app, const std::string& whose) {
  whose_ = whose;
  const auto take = [this](const std::string& text) { text_ = text; };
  app.add_option_function<std::string>("--" + name_, take, "Password " + whose)->type_name("TEXTO");
  app.add_option("--" + name_ + "-ficheiro", file_, "Ficheiro com a password na primeira linha")
      ->type_name("FICHEIRO");
  app.add_flag("--" + name_ + "-pedir", asks_,
               fmt::format("Pede a password no terminal; sem opção, lê-se a variável {}", variable_));
}

std::optional<std::string> PasswordOption::Read(const CommandEnvironment& environment) const {
  if (text_) return text_;
  if (!file_.empty()) return FirstLine(file_);
  if (asks_) return Prompt(environment);
  return environment.variable ? environment.variable(variable_) : std::nullopt;
}

std::string PasswordOption::Require(const CommandEnvironment& environment) const {
  if (auto password = Read(environment)) return *password;
  if (environment.askSecret) return Prompt(environment);
  throw UsageError(
      fmt::format("Falta a password {}: --{}-ficheiro, --{}-pedir ou {}.", whose_, name_, name_, variable_));
}

std::string PasswordOption::Prompt(const CommandEnvironment& environment) const {
  if (environment.askSecret) {
    if (auto password = environment.askSecret(fmt::format("Password {}: ", whose_))) return *password;
  }
  throw Refusal("Não há terminal onde pedir a password.");
}

}  // namespace korvel::cli
