#include "cli/usage_texts.h"

#include <fmt/format.h>

#include <string_view>

namespace korvel::cli {

namespace {

/// How the library words an error: the name, or names, stand between fixed English words.
struct Wording {
  std::string_view before;
  std::string_view between;  // between two names; empty where there is one
  std::string_view after;
  std::string_view portuguese;  // with {0} and {1} for the names
};

constexpr Wording kWordings[] = {
    {"The following argument was not expected: ", "", "", "Opção ou argumento desconhecido: {0}."},
    {"The following arguments were not expected: ", "", "", "Opções ou argumentos desconhecidos: {0}."},
    {"A subcommand is required", "", "", "Falta o comando."},
    {"", "", " is required", "Falta a opção {0}."},
    {"", " excludes ", "", "A opção {0} não se usa com {1}."},
    {"", " requires ", "", "A opção {0} precisa de {1}."},
    {"Could not convert: ", " = ", "", "A opção {0} não aceita o valor {1}."},
    {"", ": ", " missing", "A opção {0} precisa de um valor."},
    {"", ": ", "", "{0}: {1}."},
};

/// The library's text for an option's error, with nothing added, when the wording fits it.
bool Fit(const Wording& wording, std::string_view text, std::string& translated) {
  if (!text.starts_with(wording.before) || !text.ends_with(wording.after)) return false;
  if (text.size() < wording.before.size() + wording.after.size()) return false;
  text.remove_prefix(wording.before.size());
  text.remove_suffix(wording.after.size());
  const auto cut = wording.between.empty() ? text.size() : text.find(wording.between);
  if (cut == std::string_view::npos) return false;
  const auto second = cut == text.size() ? std::string_view() : text.substr(cut + wording.between.size());
  translated = fmt::format(fmt::runtime(wording.portuguese), text.substr(0, cut), second);
  return true;
}

}  // namespace

std::string UsageText(const CLI::ParseError& error) {
  std::string translated;
  for (const Wording& wording : kWordings) {
    if (Fit(wording, error.what(), translated)) return translated;
  }
  return fmt::format("Linha de comando inválida ({}).", error.what());
}

void SpeakPortuguese(CLI::App& app) {
  const auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", "Uso");
  formatter->label("OPTIONS", "OPÇÕES");
  formatter->label("SUBCOMMAND", "COMANDO");
  formatter->label("SUBCOMMANDS", "COMANDOS");
  formatter->label("Positionals", "Argumentos");
  formatter->label("REQUIRED", "(obrigatório)");
  formatter->label("TEXT", "TEXTO");
  formatter->label("Needs", "Precisa de");
  formatter->label("Excludes", "Não se usa com");
  formatter->column_width(44);
  app.formatter(formatter);
  app.option_defaults()->group("Opções");
  DeclareHelp(app);
}

void DeclareHelp(CLI::App& app) {
  app.set_help_flag("-h,--help,--ajuda", "Mostra esta ajuda e termina");
}

}  // namespace korvel::cli
