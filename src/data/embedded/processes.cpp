#include "data/embedded/processes.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <random>
#include <thread>

#include "data/embedded/convert.h"
#include "data/embedded/errors.h"

namespace korvel::data::embedded {

/// Shared with other processes: fixed size, no pointers. Texts end at their first zero.
struct ProcessRecord {
  std::atomic<std::uint64_t> stamp;   // of the connection that has the place; never the same twice
  std::atomic<std::uint64_t> killed;  // stamp of the one that was killed here
  std::atomic<std::int64_t> lastBatch;
  std::int64_t loginTime;
  std::atomic<std::int32_t> running;
  std::atomic<std::int32_t> transactions;
  std::int32_t systemProcess;
  std::atomic<std::int32_t> changedCount;
  std::array<std::atomic<std::int32_t>, ProcessSlot::kMostDatabases> databases;  // 0: none
  std::array<ChangedObject, ProcessSlot::kMostChanged> changed;
  std::array<char, 520> login;
  std::array<char, 520> account;
  std::array<char, 128> host;
  std::array<char, 256> program;
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

namespace {

constexpr int kPlaces = 500;
constexpr int kFirstSpid = 51;
constexpr std::size_t kRecordBytes = 2048;
static_assert(sizeof(ProcessRecord) <= kRecordBytes);
/// Before the first record: the gate's byte, and how many places were ever taken, so that nobody looks at all of them.
struct ProcessHeader {
  std::atomic<std::int32_t> gate;
  std::atomic<std::int32_t> used;
};
constexpr std::size_t kHeaderBytes = 4096;
constexpr std::size_t kFileBytes = kHeaderBytes + kPlaces * kRecordBytes;

off_t OffsetOf(int place) {
  return static_cast<off_t>(kHeaderBytes + static_cast<std::size_t>(place) * kRecordBytes);
}

/// A lock that belongs to the open file, so that two connections of one process keep each other out too.
bool Lock(int handle, int command, short type, off_t start) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = start;
  lock.l_len = 1;
  int result = 0;
  do {
    result = ::fcntl(handle, command, &lock);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

template <std::size_t size>
void Put(std::array<char, size>& target, std::string_view text) {
  const std::size_t length = std::min(text.size(), size - 1);
  std::memcpy(target.data(), text.data(), length);
  std::fill(target.begin() + static_cast<std::ptrdiff_t>(length), target.end(), '\0');
}

template <std::size_t size>
std::string TextOf(const std::array<char, size>& source) {
  return std::string(source.data(), ::strnlen(source.data(), size));
}

std::string HostName() {
  std::array<char, 128> host{};
  return ::gethostname(host.data(), host.size() - 1) == 0 ? host.data() : "LOCAL";
}

std::uint64_t NewStamp() {
  std::random_device random;
  return (std::uint64_t{random()} << 32 | random()) | 1;
}

Error Unusable() {
  return Failed(Code::Input, "A lista de processos do servidor não pôde ser lida nem escrita");
}

}  // namespace

ProcessSlot::ProcessSlot(const std::filesystem::path& file, const ProcessStart& start) {
  Open(file);
  Take();
  ProcessRecord& record = Record(place_);
  record.stamp.store(0);  // whoever had the place before
  for (auto& database : record.databases) database.store(0);
  record.running.store(0);
  record.transactions.store(0);
  record.changedCount.store(0);
  record.loginTime = TicksNow();
  record.lastBatch.store(record.loginTime);
  record.systemProcess = ::getpid();
  Put(record.login, start.login);
  Put(record.account, start.account);
  Put(record.program, start.program);
  Put(record.host, HostName());
  ownKilled_ = &record.killed;
  stamp_ = NewStamp();
  record.stamp.store(stamp_);
  std::int32_t used = Used().load();
  while (used <= place_ && !Used().compare_exchange_weak(used, place_ + 1)) {
  }
}

ProcessSlot::~ProcessSlot() {
  if (place_ >= 0) Record(place_).stamp.store(0);
  ::munmap(memory_, kFileBytes);
  ::close(handle_);
}

void ProcessSlot::Open(const std::filesystem::path& file) {
  constexpr int kAccess = 0660;
  handle_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kAccess);
  if (handle_ < 0) throw Unusable();
  // Room is taken at once: a page without room on the disk would end the process when it is written.
  struct stat status {};
  const bool whole = ::fstat(handle_, &status) == 0 && status.st_size >= static_cast<off_t>(kFileBytes);
  const bool room = whole || ::posix_fallocate(handle_, 0, kFileBytes) == 0;
  memory_ = room ? ::mmap(nullptr, kFileBytes, PROT_READ | PROT_WRITE, MAP_SHARED, handle_, 0) : MAP_FAILED;
  if (memory_ != MAP_FAILED) return;
  ::close(handle_);
  throw Unusable();
}

/// The first place whose lock is free.
void ProcessSlot::Take() {
  for (int place = 0; place < kPlaces; ++place) {
    if (!Lock(handle_, F_OFD_SETLK, F_WRLCK, OffsetOf(place))) continue;
    place_ = place;
    return;
  }
  ::munmap(memory_, kFileBytes);
  ::close(handle_);
  throw Failed(Code::TooManyConnections, "O servidor atingiu o número máximo de ligações");
}

ProcessRecord& ProcessSlot::Record(int place) const {
  return *reinterpret_cast<ProcessRecord*>(static_cast<char*>(memory_) + OffsetOf(place));
}

std::atomic<std::int32_t>& ProcessSlot::Used() const {
  return static_cast<ProcessHeader*>(memory_)->used;
}

int ProcessSlot::Spid() const {
  return kFirstSpid + place_;
}

void ProcessSlot::SetDatabases(std::span<const int> databases) {
  if (databases.size() > kMostDatabases) {
    throw Failed(Code::OutOfRoom, "A transacção abrange demasiadas bases de dados");
  }
  auto& kept = Record(place_).databases;
  for (std::size_t i = 0; i < kept.size(); ++i) kept[i].store(i < databases.size() ? databases[i] : 0);
}

void ProcessSlot::SetTransactions(int count) {
  Record(place_).transactions.store(count);
  if (count == 0) Record(place_).changedCount.store(0);
}

void ProcessSlot::SetRunning(bool running) {
  ProcessRecord& record = Record(place_);
  record.running.store(running ? 1 : 0);
  if (running) record.lastBatch.store(TicksNow());
}

void ProcessSlot::AddChanged(const ChangedObject& object) {
  ProcessRecord& record = Record(place_);
  const auto count = static_cast<std::size_t>(record.changedCount.load());
  const auto end = record.changed.begin() + static_cast<std::ptrdiff_t>(count);
  const bool known = std::any_of(record.changed.begin(), end, [&](const ChangedObject& other) {
    return other.database == object.database && other.object == object.object;
  });
  if (known || count == kMostChanged) return;
  record.changed[count] = object;
  record.changedCount.store(static_cast<std::int32_t>(count) + 1);
}

/// Whether somebody has the place: its lock is held, and he was not killed.
bool ProcessSlot::IsLive(int place) const {
  const ProcessRecord& record = Record(place);
  const std::uint64_t stamp = record.stamp.load();
  if (stamp == 0 || record.killed.load() == stamp) return false;
  if (place == place_) return true;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = OffsetOf(place);
  lock.l_len = 1;
  return ::fcntl(handle_, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

ProcessEntry ProcessSlot::Read(int place) const {
  const ProcessRecord& record = Record(place);
  ProcessEntry entry;
  entry.spid = kFirstSpid + place;
  entry.systemProcess = record.systemProcess;
  entry.login = TextOf(record.login);
  entry.account = TextOf(record.account);
  entry.host = TextOf(record.host);
  entry.program = TextOf(record.program);
  entry.loginTime = record.loginTime;
  entry.lastBatch = record.lastBatch.load();
  entry.running = record.running.load() != 0;
  entry.transactions = record.transactions.load();
  for (const auto& database : record.databases) {
    if (const int id = database.load(); id != 0) entry.databases.push_back(id);
  }
  const auto count = static_cast<std::size_t>(std::clamp(record.changedCount.load(), 0, int{kMostChanged}));
  entry.changed.assign(record.changed.begin(), record.changed.begin() + static_cast<std::ptrdiff_t>(count));
  return entry;
}

std::vector<ProcessEntry> ProcessSlot::All() const {
  std::vector<ProcessEntry> entries;
  const int used = std::min(Used().load(), kPlaces);
  for (int place = 0; place < used; ++place) {
    if (IsLive(place)) entries.push_back(Read(place));
  }
  return entries;
}

std::vector<ProcessEntry> ProcessSlot::OthersIn(int database) const {
  std::vector<ProcessEntry> entries = All();
  std::erase_if(entries, [&](const ProcessEntry& entry) {
    return entry.spid == Spid() || std::count(entry.databases.begin(), entry.databases.end(), database) == 0;
  });
  return entries;
}

std::optional<ProcessEntry> ProcessSlot::Find(int spid) const {
  const int place = spid - kFirstSpid;
  if (place < 0 || place >= kPlaces || !IsLive(place)) return std::nullopt;
  return Read(place);
}

bool ProcessSlot::Kill(int spid) {
  if (!Find(spid)) return false;
  ProcessRecord& record = Record(spid - kFirstSpid);
  const std::uint64_t victim = record.stamp.load();
  record.killed.store(victim);
  constexpr int kMostTries = 200;
  for (int i = 0; i < kMostTries && record.stamp.load() == victim && record.running.load() != 0; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return true;
}

ProcessSlot::Gate::Gate(const ProcessSlot& slot) : handle_(slot.handle_) {
  if (!Lock(handle_, F_OFD_SETLKW, F_WRLCK, 0)) throw Unusable();
}

ProcessSlot::Gate::~Gate() {
  Lock(handle_, F_OFD_SETLK, F_UNLCK, 0);
}

}  // namespace korvel::data::embedded
