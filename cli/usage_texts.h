#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace korvel::cli {

/// What is wrong with a command line, in Portuguese: the library's own error, told anew.
std::string UsageText(const CLI::ParseError& error);

/// Portuguese headings and labels in the help of a command and of all that are made below it afterwards.
void SpeakPortuguese(CLI::App& app);
/// The option that asks for help; a command made below another needs it again, to have it among its own.
void DeclareHelp(CLI::App& app);

}  // namespace korvel::cli
