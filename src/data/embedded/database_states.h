#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/store.h"

namespace korvel::data::embedded {

constexpr std::string_view kMaster = "master";
constexpr int kMasterId = 1;

/// A database of a server's list, with what holds for all who use it.
struct DatabaseEntry {
  std::int64_t id = 0;
  std::string name;
  std::string owner;  // sid of its "dbo"
  bool readOnly = false;
  bool singleUser = false;
  int level = 80;  // compatibility
  std::int64_t created = 0;

  bool IsMaster() const { return id == kMasterId; }
};

/// The databases of a server, in the file of its master. A change raises the file's version, so that every connection
/// takes notice.
class DatabaseList {
 public:
  explicit DatabaseList(Store& master) : master_(master) {}

  /// Makes the table in a new master, with master itself.
  static void Create(Store& master);

  /// master first, then the others in the order in which they were made.
  std::vector<DatabaseEntry> All();
  std::optional<DatabaseEntry> Find(std::string_view name);

  void Add(std::string_view name, std::string_view owner);
  void Remove(std::int64_t id);
  void SetOwner(std::int64_t id, std::string_view sid);
  void SetReadOnly(std::int64_t id, bool readOnly);
  void SetSingleUser(std::int64_t id, bool singleUser);
  void SetLevel(std::int64_t id, int level);

 private:
  void Change(std::string_view column, const Stored& value, std::int64_t id);

  Store& master_;
};

}  // namespace korvel::data::embedded
