#include "data/embedded/backup.h"

#include <fcntl.h>
#include <sodium.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <optional>
#include <sstream>

#include <fmt/format.h>

#include "data/embedded/catalogue.h"
#include "data/embedded/errors.h"
#include "data/embedded/files.h"

namespace korvel::data::embedded {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMagic = "KORVEL-BACKUP 1";
constexpr std::size_t kTrailerSize = 512;
constexpr std::size_t kPiece = 1U << 20;
constexpr int kPagesAtOnce = 1024;
/// "KORB", in the header of a copy.
constexpr std::int64_t kBackupId = 0x4B4F5242;
constexpr std::int64_t kIdOffset = 68;

std::string Reason(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return "a pasta ou o ficheiro não existe";
    case EACCES:
    case EPERM:
    case EROFS:
      return "não há permissão";
    case EISDIR:
      return "é uma pasta";
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return "não há espaço em disco";
    default:
      return fmt::format("erro {} do sistema", error);
  }
}

Error CannotOpen(const fs::path& file, const std::string& reason) {
  return Failed(Code::BackupNotOpened,
                fmt::format("Não é possível abrir o ficheiro de backup '{}': {}", file.string(), reason));
}

Error CannotWrite(const fs::path& file, const std::string& reason) {
  return Failed(Code::BackupNotWritten, fmt::format("A escrita em '{}' falhou: {}", file.string(), reason));
}

Error NoBackup(const fs::path& file) {
  return Failed(Code::NotABackup,
                fmt::format("O ficheiro '{}' não é um backup completo deste sistema ou está danificado",
                            file.string()));
}

class Hash {
 public:
  Hash() { crypto_generichash_init(&state_, nullptr, 0, crypto_generichash_BYTES); }
  void Add(std::string_view bytes) {
    crypto_generichash_update(&state_, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  }
  /// Of the pieces, and of what the backup tells of itself.
  std::string Hex(const BackupMark& mark) {
    Add(fmt::format("{}\n{}", mark.database, mark.made));
    std::array<unsigned char, crypto_generichash_BYTES> hash{};
    crypto_generichash_final(&state_, hash.data(), hash.size());
    std::string text;
    for (const unsigned char byte : hash) text += fmt::format("{:02x}", byte);
    return text;
  }

 private:
  crypto_generichash_state state_;
};

struct Trailer {
  BackupMark mark;
  std::int64_t size = 0;
  std::string hash;
};

std::string Print(const Trailer& trailer) {
  std::string text = fmt::format("{}\n{}\n{}\n{}\n{}\n", kMagic, trailer.mark.database, trailer.mark.made,
                                 trailer.size, trailer.hash);
  text.resize(kTrailerSize, '\n');
  return text;
}

std::optional<Trailer> ParseTrailer(const std::string& text) {
  std::istringstream lines(text);
  std::string magic;
  Trailer trailer;
  std::getline(lines, magic);
  std::getline(lines, trailer.mark.database);
  lines >> trailer.mark.made >> trailer.size >> trailer.hash;
  if (!lines || magic != kMagic || Print(trailer) != text) return std::nullopt;
  return trailer;
}

/// A file that may be replaced is empty or begins as a backup; its end may be lost.
bool BeginsAsBackup(const OpenFile& file) {
  constexpr std::array<std::int64_t, 4> kShifts = {24, 16, 8, 0};
  std::string id;
  if (!file.ReadAt(kIdOffset, id, kShifts.size())) return false;
  std::int64_t number = 0;
  for (const char byte : id) number = number << 8 | static_cast<unsigned char>(byte);
  return file.Size() == 0 || number == kBackupId;
}

void RequireReplaceable(const fs::path& target, bool replaces) {
  const OpenFile present(target, O_RDONLY);
  if (!present.IsOpen()) {
    if (errno == ENOENT) return;
    throw CannotOpen(target, Reason(errno));
  }
  if (present.Size() < 0) throw CannotOpen(target, Reason(EISDIR));
  if (!BeginsAsBackup(present)) throw NoBackup(target);
  if (!replaces) throw CannotOpen(target, "já tem um backup, que só WITH INIT substitui");
}

/// The file beside a target in which a backup is written. One process at a time has it; what a killed one left is
/// overwritten.
class Draft {
 public:
  explicit Draft(const fs::path& target) : target_(target), path_(target.string() + ".new") {
    do {
      file_.emplace(path_, O_RDWR | O_CREAT);
      if (!file_->IsOpen()) throw CannotOpen(target_, Reason(errno));
      if (::flock(file_->Handle(), LOCK_EX | LOCK_NB) != 0) {
        throw CannotOpen(target_, "outro backup está a ser escrito");
      }
      // Whoever had it before may have put it in its place in the meantime.
    } while (!IsStillThere());
    Empty();
  }
  ~Draft() {
    if (!placed_) RemoveDatabaseFiles(path_);
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  const fs::path& Path() const { return path_; }

  void Place() {
    if (!file_->Sync()) throw CannotWrite(target_, Reason(errno));
    std::error_code failure;
    fs::rename(path_, target_, failure);
    if (failure) throw CannotWrite(target_, Reason(failure.value()));
    placed_ = true;
    SyncFolder(target_.parent_path());
  }

 private:
  bool IsStillThere() const {
    struct stat mine {};
    struct stat there {};
    return ::fstat(file_->Handle(), &mine) == 0 && ::stat(path_.c_str(), &there) == 0 &&
           mine.st_ino == there.st_ino && mine.st_dev == there.st_dev;
  }
  void Empty() const {
    RemoveLogFiles(path_);
    std::error_code failure;
    fs::resize_file(path_, 0, failure);
    if (failure) throw CannotWrite(target_, Reason(failure.value()));
  }

  fs::path target_;
  fs::path path_;
  std::optional<OpenFile> file_;
  bool placed_ = false;
};

struct EndBackup {
  void operator()(sqlite3_backup* backup) const { sqlite3_backup_finish(backup); }
};

/// Page by page from one moment of the source: a reader keeps that moment, and writers do not wait.
void CopyPages(Store& source, Store& copy, const KeepGoing& keepGoing) {
  copy.Run("PRAGMA journal_mode=OFF");
  source.Run("BEGIN");
  source.Number("SELECT count(*) FROM sqlite_schema");
  std::unique_ptr<sqlite3_backup, EndBackup> pages(
      sqlite3_backup_init(copy.Raw(), "main", source.Raw(), "main"));
  if (!pages) copy.Fail(SQLITE_ERROR);
  int result = SQLITE_OK;
  while (result == SQLITE_OK) {
    keepGoing();
    result = sqlite3_backup_step(pages.get(), kPagesAtOnce);
  }
  if (result != SQLITE_DONE) {
    pages.reset();
    copy.Fail(result);
  }
  pages.reset();
  source.Run("ROLLBACK");
}

void CopyDatabase(Store& source, const fs::path& file, const KeepGoing& keepGoing) {
  {
    Store copy(file, source.Name(), OpenMode::Create, 0);
    CopyPages(source, copy, keepGoing);
  }
  Store copy(file, source.Name(), OpenMode::Existing, 0);
  copy.Run("PRAGMA journal_mode=DELETE");
  copy.Run(fmt::format("PRAGMA application_id={}", kBackupId));
}

/// Reads a file from its beginning up to `size`; false when it ends before or cannot be read.
template <typename Take>
bool ReadPieces(const OpenFile& file, std::int64_t size, Take take) {
  std::string piece;
  for (std::int64_t at = 0; at < size; at += static_cast<std::int64_t>(piece.size())) {
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(size - at, kPiece));
    if (!file.ReadAt(at, piece, count) || piece.size() != count) return false;
    take(std::string_view(piece));
  }
  return true;
}

void Seal(const fs::path& file, const BackupMark& mark, const KeepGoing& keepGoing) {
  const OpenFile copy(file, O_RDWR | O_APPEND);
  Trailer trailer{mark, copy.IsOpen() ? copy.Size() : -1, {}};
  Hash hash;
  const bool read = ReadPieces(copy, trailer.size, [&](std::string_view piece) {
    keepGoing();
    hash.Add(piece);
  });
  trailer.hash = hash.Hex(mark);
  if (trailer.size <= 0 || !read || !copy.Write(Print(trailer))) throw CannotWrite(file, Reason(errno));
}

}  // namespace

void WriteBackup(Store& source, const fs::path& target, const BackupMark& mark, bool replaces,
                 const KeepGoing& keepGoing) {
  RequireReplaceable(target, replaces);
  Draft draft(target);
  try {
    CopyDatabase(source, draft.Path(), keepGoing);
  } catch (const Error& failure) {
    const int code = failure.Native();
    const bool room = code == static_cast<int>(Code::DiskFull) || code == static_cast<int>(Code::Input);
    if (!room) throw;
    throw CannotWrite(target, "não há espaço em disco, ou o disco não pode ser escrito");
  }
  Seal(draft.Path(), mark, keepGoing);
  draft.Place();
}

BackupMark ReadBackup(const fs::path& backup, const fs::path& copy, const KeepGoing& keepGoing) {
  const OpenFile file(backup, O_RDONLY);
  if (!file.IsOpen()) throw CannotOpen(backup, Reason(errno));
  const std::int64_t size = file.Size() - static_cast<std::int64_t>(kTrailerSize);
  std::string bytes;
  if (size <= 0 || !file.ReadAt(size, bytes, kTrailerSize)) throw NoBackup(backup);
  const auto trailer = ParseTrailer(bytes);
  if (!trailer || trailer->size != size || !BeginsAsBackup(file)) throw NoBackup(backup);

  RemoveDatabaseFiles(copy);
  const OpenFile written(copy, O_WRONLY | O_CREAT | O_EXCL);
  if (!written.IsOpen()) throw CannotWrite(copy, Reason(errno));
  Hash hash;
  const bool read = ReadPieces(file, size, [&](std::string_view piece) {
    keepGoing();
    hash.Add(piece);
    if (!written.Write(piece)) throw CannotWrite(copy, Reason(errno));
  });
  if (!read || hash.Hex(trailer->mark) != trailer->hash) throw NoBackup(backup);
  if (!written.Sync()) throw CannotWrite(copy, Reason(errno));
  return trailer->mark;
}

}  // namespace korvel::data::embedded
