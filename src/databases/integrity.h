#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "session/connections.h"

namespace korvel::databases {

/// Looks in one database, or with a blank name in all of the product family, for tables whose owner is neither
/// "dbo" nor "sys". Empty ones and those named "fieldsdef" or "tabledefs" are dropped. False when others are left,
/// which stand in ObjectReportFile() then. A database that does not open is shown and passed over; so is a table that
/// cannot be counted or dropped, which is reported. Throws toolkit::FileError when the file cannot be written.
bool VerificaObjectos(const session::Context& context, data::Connection& master,
                      std::string_view database = {});

/// The same for the database that a connection stands in: a line of the report for each table left, "<database> -
/// <owner> - <table>". Throws data::Error when the tables cannot be listed.
std::vector<std::string> ForeignObjects(data::Connection& connection, std::string_view database);

/// "ObjIntegrity.txt" in the system's temporary folder.
std::filesystem::path ObjectReportFile();

}  // namespace korvel::databases
