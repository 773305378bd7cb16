#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/store.h"

namespace korvel::data::embedded {

/// A name for a backup file.
struct Device {
  std::string name;
  std::string file;  // as it was given
};

/// The devices of a server, in the file of its master.
class DeviceList {
 public:
  explicit DeviceList(Store& master) : master_(master) {}

  /// Makes the table in a new master.
  static void Create(Store& master);

  std::vector<Device> All();
  std::optional<Device> Find(std::string_view name);
  /// Throws 15026 when there is one of that name.
  void Add(const Device& device);
  /// Throws 15012 when there is none.
  void Remove(std::string_view name);

 private:
  Store& master_;
};

}  // namespace korvel::data::embedded
