#include "databases/backups.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "databases/attempts.h"
#include "databases/names.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

std::string DeviceName(std::string_view database) {
  return fmt::format("Back{}", database);
}

/// The file that holds the rows of the connection's current database, as its server names it.
std::string DataFile(data::Connection& connection) {
  auto files = connection.Query("sp_helpfile");
  for (; !files.Eof(); files.MoveNext()) {
    const std::string_view file = toolkit::TrimRight(files.Text("filename"));
    if (toolkit::Lower(file).find("mdf") != std::string::npos) return std::string(file);
  }
  throw data::Error(data::Failure::Statement, "O servidor não indica o ficheiro de dados da base de dados");
}

/// The folder without its last part and the separator before it.
std::string_view Above(std::string_view path) {
  const std::size_t cut = path.find_last_of("\\/");
  return path.substr(0, cut == std::string_view::npos ? 0 : cut);
}

void AddDevice(data::Connection& master, const std::string& device, const std::string& file) {
  const std::string known = "select * from sysdevices where name=" + data::Quoted(device);
  if (!master.Query(known).Eof()) return;
  master.Execute(fmt::format("exec sp_addumpdevice 'disk',{},{}", data::Quoted(device), data::Quoted(file)));
}

}  // namespace

std::string BackupFolder(std::string_view dataFile) {
  const std::string_view folder = Above(dataFile);
  const char separator = dataFile.size() > folder.size() ? dataFile[folder.size()] : '\\';
  return fmt::format("{0}{1}backup{1}", Above(folder), separator);
}

std::string BackupFile(std::string_view database) {
  return DeviceName(database) + ".dat";
}

bool BackUpDatabase(const session::Context& context, std::string_view database) {
  return AttemptOn(context, "master", [&](data::Connection& master) {
    const std::string name = AsName(database);
    master.Execute("use " + name);
    const std::string folder = BackupFolder(DataFile(master));
    master.Execute("use master");
    const std::string device = DeviceName(database);
    AddDevice(master, device, folder + BackupFile(database));
    master.Execute(fmt::format("backup database {} to {} WITH INIT", name, AsName(device)));
  });
}

bool RestoreSQLDatabase(const session::Context& context, std::string_view database, std::string_view folder) {
  const bool restored = AttemptOn(context, "master", [&](data::Connection& master) {
    const std::string name = AsName(database);
    const std::string source = toolkit::IsBlank(folder)
                                   ? AsName(DeviceName(database))
                                   : "Disk=" + data::Quoted(std::string(folder) + BackupFile(database));
    master.Execute(fmt::format("restore database {} from {} WITH REPLACE", name, source));
  });
  if (restored) context.dialogs.Message(toolkit::Icon::Information, "Os Dados Foram Repostos!");
  return restored;
}

}  // namespace korvel::databases
