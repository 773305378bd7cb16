#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/procedures/procedure.h"

namespace korvel::data::embedded {
namespace {

constexpr ColumnType kFile = Varchar(260);
constexpr ColumnType kSize = Varchar(18);

RowTables AddDevice(const Site& site) {
  site.session.Require(Right::ManageDevices);
  if (!SameName(*site.arguments[0], "disk")) {
    throw Failed(Code::BadDeviceType,
                 fmt::format("O tipo de dispositivo '{}' não é conhecido, use 'disk'", *site.arguments[0]));
  }
  if (site.arguments[1]->empty() || site.arguments[2]->empty()) {
    throw Failed(Code::BadPrincipalName, "O nome do dispositivo ou do seu ficheiro não é válido");
  }
  site.view.server.Devices().Add({*site.arguments[1], *site.arguments[2]});
  return {};
}

/// The file stays: whoever may name devices need not be whoever may delete files.
RowTables DropDevice(const Site& site) {
  site.session.Require(Right::ManageDevices);
  site.view.server.Devices().Remove(*site.arguments[0]);
  return {};
}

/// A database is one file, so the log of the real server has no line.
RowTables HelpFile(const Site& site) {
  RowTable table{{{"name", kName},
                  {"fileid", ColumnType{Type::SmallInt}},
                  {"filename", kFile},
                  {"filegroup", kName},
                  {"size", kSize},
                  {"maxsize", kSize},
                  {"growth", kSize},
                  {"usage", Varchar(9)}},
                 {}};
  const std::string name(site.view.database);
  if (!site.Passes(0, name)) return {std::move(table)};
  const std::filesystem::path file = std::filesystem::absolute(site.view.server.FileOf(name));
  std::error_code failure;
  const std::uintmax_t size = std::filesystem::file_size(file, failure);
  constexpr std::uintmax_t kKilo = 1024;
  table.rows.push_back({name, std::int64_t{1}, file.string(), "PRIMARY",
                        fmt::format("{} KB", failure ? 0 : (size + kKilo - 1) / kKilo), "Unlimited", "10%",
                        "data only"});
  return {std::move(table)};
}

constexpr Procedure kStorageProcedures[] = {
    {"sp_addumpdevice", {"@devtype", "@logicalname", "@physicalname"}, 3, AddDevice},
    {"sp_dropdevice", {"@logicalname"}, 1, DropDevice},
    {"sp_helpfile", {"@filename"}, 0, HelpFile},
};

}  // namespace

std::span<const Procedure> StorageProcedures() {
  return kStorageProcedures;
}

}  // namespace korvel::data::embedded
