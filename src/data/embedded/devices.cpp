#include "data/embedded/devices.h"

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {

void DeviceList::Create(Store& master) {
  master.Run(R"(CREATE TABLE "$devices" (name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, file TEXT NOT NULL)
    WITHOUT ROWID)");
}

std::vector<Device> DeviceList::All() {
  std::vector<Device> devices;
  Prepared rows = master_.Prepare(R"(SELECT name, file FROM "$devices" ORDER BY name)");
  while (rows.Step()) devices.push_back({std::string(rows.Text(0)), std::string(rows.Text(1))});
  return devices;
}

std::optional<Device> DeviceList::Find(std::string_view name) {
  Prepared row = master_.Prepare(R"(SELECT name, file FROM "$devices" WHERE name=?1)");
  row.Bind(1, name);
  if (!row.Step()) return std::nullopt;
  return Device{std::string(row.Text(0)), std::string(row.Text(1))};
}

void DeviceList::Add(const Device& device) {
  Prepared insert = master_.Prepare(R"(INSERT OR IGNORE INTO "$devices" VALUES (?1, ?2))");
  insert.Bind(1, std::string_view(device.name));
  insert.Bind(2, std::string_view(device.file));
  insert.Run();
  if (master_.Changes() != 0) return;
  throw Failed(Code::DeviceExists, fmt::format("O dispositivo '{}' já existe", device.name));
}

void DeviceList::Remove(std::string_view name) {
  Prepared remove = master_.Prepare(R"(DELETE FROM "$devices" WHERE name=?1)");
  remove.Bind(1, name);
  remove.Run();
  if (master_.Changes() != 0) return;
  throw Failed(Code::NoDeviceToDrop, fmt::format("O dispositivo '{}' não existe", name));
}

}  // namespace korvel::data::embedded
