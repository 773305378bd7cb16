#pragma once

#include <span>
#include <string_view>

namespace korvel::databases {

/// A stored procedure of `KorvelConfig`.
struct ProcedureDefinition {
  std::string_view name;
  std::string_view text;  // "CREATE PROCEDURE ..."
};

/// In the order in which an upgrade makes them.
std::span<const ProcedureDefinition> ConfigProcedures();

/// The settings with which they are made.
inline constexpr std::string_view kProcedureSettings = "SET QUOTED_IDENTIFIER  OFF    SET ANSI_NULLS  ON";

}  // namespace korvel::databases
