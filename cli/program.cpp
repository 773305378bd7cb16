#include "cli/program.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/usage_texts.h"
#include "data/error.h"
#include "databases/admin_command.h"
#include "databases/version.h"
#include "session/command_line.h"
#include "session/connections.h"
#include "toolkit/progress_scope.h"

namespace korvel::cli {

namespace {

constexpr std::string_view kSummary =
    "korvelctl - ficheiro de auditoria SAF-T (PT) a partir do Brevant e do Lunder";
constexpr std::string_view kFooter =
    "Ajuda de um comando: korvelctl COMANDO --ajuda\n"
    "Estado à saída: 0 feito, 1 recusado ou falhado, 2 linha de comando errada.\n"
    "KORVEL_DADOS é a pasta dos servidores embebidos; KORVEL_HOJE (AAAA-MM-DD) fixa a data de hoje.";

std::string FullName(const CLI::App& app) {
  const CLI::App* parent = app.get_parent();
  return parent == nullptr ? app.get_name() : FullName(*parent) + " " + app.get_name();
}

/// The command of that name directly below another, null when there is none.
CLI::App* Find(CLI::App& app, const std::string& word) {
  const auto named = app.get_subcommands([&](const CLI::App* below) { return below->get_name() == word; });
  return named.empty() ? nullptr : named.front();
}

/// The command furthest down that the command line named.
const CLI::App& Deepest(const CLI::App& app) {
  const auto chosen = app.get_subcommands();
  return chosen.empty() ? app : Deepest(*chosen.front());
}

std::string HelpOf(const CLI::App& app) {
  return app.help(app.get_parent() == nullptr ? std::string() : FullName(*app.get_parent()));
}

void Tell(std::ostream& err, std::string_view text) {
  err << text << '\n';
}

/// A line of administration, "<@>ACT_DB<@>server...", as installations send it: it runs, whatever becomes of it, and says
/// nothing. False for any other line.
bool RunAdminLine(std::span<const std::string> arguments, const CommandEnvironment& environment) {
  const session::CommandLine line = session::ParseCommandLine(fmt::format("{}", fmt::join(arguments, " ")));
  const auto* command = std::get_if<session::AdminCommand>(&line);
  if (command == nullptr) return false;
  Workspace workspace(environment, GlobalOptions(), false, {});
  databases::RunAdminCommand(workspace.Context(), *command, environment.programFile);
  return true;
}

/// What went wrong in a command that did not come to its end, and the exit status it makes.
Exit TellFailure(std::ostream& err) {
  try {
    throw;
  } catch (const UsageError& error) {
    Tell(err, error.what());
    return Exit::WrongUsage;
  } catch (const Refusal& error) {
    Tell(err, error.what());
  } catch (const toolkit::Cancelled& error) {
    Tell(err, error.what());
  } catch (const session::EndProgram&) {
    Tell(err, "Programa terminado.");
  } catch (const data::Error& error) {
    Tell(err, fmt::format("Erro na base de dados: {}", error.what()));
  } catch (const std::exception& error) {
    Tell(err, fmt::format("Erro inesperado: {}", error.what()));
  }
  return Exit::Refused;
}

bool Succeeds(Command& command, Workspace& workspace) {
  try {
    return command.Run(workspace);
  } catch (const Refused&) {
    return false;
  }
}

Exit RunCommand(CommandLine& line, const CommandEnvironment& environment) {
  Command* command = line.Chosen();
  if (command == nullptr) {
    environment.err << "Falta o comando.\n\n" << HelpOf(Deepest(line.App()));
    return Exit::WrongUsage;
  }
  try {
    const GlobalOptions globals = line.Globals(environment);
    Workspace workspace(environment, globals, command->MakesServer(), command->Needs());
    if (Succeeds(*command, workspace)) return Exit::Done;
    if (workspace.Interrupted()) throw toolkit::Cancelled();
    workspace.Dialogs().ExplainSilence();
    return Exit::Refused;
  } catch (...) {
    return TellFailure(environment.err);
  }
}

Exit ParseAndRun(CommandLine& line, std::span<const std::string> arguments,
                 const CommandEnvironment& environment) {
  // The library takes its arguments from the back of the list.
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
  try {
    line.App().parse(reversed);
  } catch (const CLI::CallForHelp&) {
    environment.out << HelpOf(Deepest(line.App()));
    return Exit::Done;
  } catch (const CLI::ParseError& error) {
    const std::string name = FullName(Deepest(line.App()));
    Tell(environment.err, fmt::format("{} Veja: {} --ajuda", UsageText(error), name));
    return Exit::WrongUsage;
  }
  if (line.VersionAsked()) {
    environment.out << "Korvel " << databases::ProgramVersion() << '\n';
    return Exit::Done;
  }
  return RunCommand(line, environment);
}

}  // namespace

CommandLine::CommandLine() : app_(std::string(kSummary), "korvelctl"), commands_(MakeCommands()) {
  SpeakPortuguese(app_);
  app_.fallthrough();
  app_.footer(std::string(kFooter));
  app_.require_subcommand(0, 1);
  DeclareGlobals();
  for (const auto& command : commands_) Add(*command);
}

void CommandLine::DeclareGlobals() {
  app_.add_option("--servidor", globals_.servidor, "Servidor: (LOCALDB)\\NOME embebido, ou anfitrião,porta")
      ->type_name("NOME");
  app_.add_option("--login", globals_.login, "Login no servidor (sa, se não for dado)")->type_name("LOGIN");
  password_.Declare(app_, "do login");
  app_.add_flag("--windows", globals_.windows, "Entra com o utilizador do sistema operativo");
  const auto takeCompany = [this](const std::string& code) { globals_.empresa = code; };
  app_.add_option_function<std::string>("--empresa", takeCompany, "Código da empresa")->type_name("CÓDIGO");
  app_.add_flag("--sim", globals_.sim, "Confirma o que elimina dados");
  app_.add_flag("--versao", versionAsked_, "Mostra a versão do programa e termina");
}

GlobalOptions CommandLine::Globals(const CommandEnvironment& environment) const {
  GlobalOptions globals = globals_;
  globals.password = password_.Read(environment).value_or(std::string());
  return globals;
}

void CommandLine::Add(Command& command) {
  CLI::App* at = &app_;
  std::string_view words = command.Path();
  while (!words.empty()) {
    const std::string word(words.substr(0, words.find(' ')));
    words.remove_prefix(std::min(word.size() + 1, words.size()));
    CLI::App* below = Find(*at, word);
    if (below == nullptr) {
      below = at->add_subcommand(word, words.empty() ? std::string(command.Summary()) : GroupSummary(word));
      below->group("Comandos");
      DeclareHelp(*below);
      below->require_subcommand(0, 1);
    }
    at = below;
  }
  command.Declare(*at);
}

Command* CommandLine::Chosen() const {
  const CLI::App& deepest = Deepest(app_);
  std::string path;
  for (const CLI::App* app = &deepest; app->get_parent() != nullptr; app = app->get_parent()) {
    path = path.empty() ? app->get_name() : app->get_name() + " " + path;
  }
  const auto found =
      std::ranges::find_if(commands_, [&](const auto& command) { return command->Path() == path; });
  return found == commands_.end() ? nullptr : found->get();
}

Exit RunKorvelctl(std::span<const std::string> arguments, const CommandEnvironment& environment) {
  try {
    if (RunAdminLine(arguments, environment)) return Exit::Done;
    CommandLine line;
    return ParseAndRun(line, arguments, environment);
  } catch (...) {
    return TellFailure(environment.err);
  }
}

}  // namespace korvel::cli
