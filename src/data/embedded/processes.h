#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::data::embedded {

struct ProcessRecord;

/// A table that a connection has changed in its open transaction.
struct ChangedObject {
  std::int32_t database = 0;
  std::int32_t object = 0;
};

/// A connection as others see it.
struct ProcessEntry {
  int spid = 0;
  int systemProcess = 0;  // of the operating system
  std::string login;
  std::string account;  // of the operating system
  std::string host;
  std::string program;
  std::int64_t loginTime = 0;  // ticks, as datetime
  std::int64_t lastBatch = 0;
  bool running = false;
  int transactions = 0;
  std::vector<int> databases;  // the current one first, then those that its transaction keeps
  std::vector<ChangedObject> changed;

  int Database() const { return databases.empty() ? 0 : databases.front(); }
  std::string_view Status() const { return running ? "runnable" : "sleeping"; }
  std::string_view Command() const { return running ? "SELECT" : "AWAITING COMMAND"; }
};

struct ProcessStart {
  std::string_view login;
  std::string_view account;
  std::string_view program;
};

/// This connection's place in the list of those who are connected to a server, over all processes of the machine: a
/// record in a file that they share. The record holds as long as its connection holds a lock on it, so a process that
/// dies leaves nothing behind. A connection that was killed counts as gone at once.
class ProcessSlot {
 public:
  /// Throws Error: 17809 when all places are taken, 823 when the file cannot be used.
  ProcessSlot(const std::filesystem::path& file, const ProcessStart& start);
  ~ProcessSlot();
  ProcessSlot(const ProcessSlot&) = delete;
  ProcessSlot& operator=(const ProcessSlot&) = delete;

  int Spid() const;
  /// Set by another connection. A cheap look, fit for every row.
  bool Killed() const { return ownKilled_->load(std::memory_order_acquire) == stamp_; }

  /// What others see of this connection. At most kMostDatabases: more throw 701.
  void SetDatabases(std::span<const int> databases);
  void SetTransactions(int count);
  void SetRunning(bool running);
  /// Counted until SetTransactions(0); beyond the first kMostChanged none.
  void AddChanged(const ChangedObject& object);

  std::vector<ProcessEntry> All() const;
  /// The other connections that have the database open.
  std::vector<ProcessEntry> OthersIn(int database) const;
  std::optional<ProcessEntry> Find(int spid) const;
  /// Marks a connection as killed, and waits up to two seconds for what it is doing to end. False when none has that
  /// number.
  bool Kill(int spid);

  /// Keeps the states of databases and their users from changing at once: held while a connection enters a database or
  /// changes a state.
  class Gate {
   public:
    explicit Gate(const ProcessSlot& slot);
    ~Gate();
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

   private:
    int handle_;
  };

  static constexpr std::size_t kMostDatabases = 16;
  static constexpr std::size_t kMostChanged = 32;

 private:
  void Open(const std::filesystem::path& file);
  void Take();
  ProcessRecord& Record(int place) const;
  std::atomic<std::int32_t>& Used() const;
  bool IsLive(int place) const;
  ProcessEntry Read(int place) const;

  int handle_ = -1;
  void* memory_ = nullptr;
  int place_ = -1;
  std::uint64_t stamp_ = 0;
  std::atomic<std::uint64_t>* ownKilled_ = nullptr;
};

}  // namespace korvel::data::embedded
