#include "data/embedded/database.h"

#include "data/embedded/errors.h"
#include "data/embedded/parser.h"
#include "data/embedded/schema_writer.h"

namespace korvel::data::embedded {
namespace {

constexpr std::size_t kKeptStatements = 64;
/// Longer texts are mostly values, which do not come again.
constexpr std::size_t kLongestKey = 16 * 1024;

}  // namespace

Database::Database(std::string name, std::int64_t id, std::unique_ptr<Store> store)
    : name_(std::move(name)),
      id_(id),
      store_(std::move(store)),
      catalogue_(Catalogue::Load(*store_)),
      version_(store_->Prepare("PRAGMA user_version")) {
  store_->OnDuplicate([this](std::string_view words) { return DuplicateError(*catalogue_, words); });
  store_->Functions().objectName = [this](std::int64_t object) { return catalogue_->NameOf(object); };
}

std::shared_ptr<const Catalogue> Database::Now() {
  const std::int64_t now = version_.Step() ? version_.Integer(0) : 0;
  version_.Reset();
  if (stale_ || now != catalogue_->Version()) Take(Catalogue::Load(*store_));
  return catalogue_;
}

void Database::Take(std::shared_ptr<const Catalogue> changed) {
  index_.clear();
  entries_.clear();
  procedures_.clear();
  catalogue_ = std::move(changed);
  stale_ = false;
}

void Database::Forget() {
  stale_ = true;
}

std::shared_ptr<const StoredProcedure> Database::FindProcedure(std::string_view name) {
  const ProcedureEntry* entry = Now()->FindProcedure(name);
  if (entry == nullptr) return nullptr;
  auto& procedure = procedures_[entry->id];
  if (!procedure) procedure = std::make_shared<const StoredProcedure>(ParseProcedure(entry->text));
  return procedure;
}

std::shared_ptr<Ready> Database::Find(const std::string& key) {
  const auto found = index_.find(key);
  if (found == index_.end()) return nullptr;
  entries_.splice(entries_.begin(), entries_, found->second);
  return entries_.front().ready;
}

void Database::Keep(const std::string& key, std::shared_ptr<Ready> ready) {
  if (key.size() > kLongestKey || index_.contains(key)) return;
  entries_.push_front({key, std::move(ready)});
  index_.emplace(entries_.front().key, entries_.begin());
  if (entries_.size() <= kKeptStatements) return;
  index_.erase(entries_.back().key);
  entries_.pop_back();
}

}  // namespace korvel::data::embedded
