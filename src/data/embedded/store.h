#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "data/embedded/convert.h"
#include "data/error.h"

struct sqlite3;
struct sqlite3_stmt;

namespace korvel::data::embedded {

/// What the functions of one open file share with those who call them.
struct FunctionContext {
  /// The error that a function raised, for the step that failed by it.
  std::exception_ptr raised;
  /// Name of the object with that number, empty for none; for object_name().
  std::function<std::string(std::int64_t)> objectName;
  /// What the session tells of itself and its server; see server_facts.h.
  std::function<OwnedStored(std::string_view fact, std::string_view first, std::string_view second)>
      serverFact;
};

class Store;

/// A prepared statement of a Store, which it must not outlive. Parameters count from 1, columns from 0.
class Prepared {
 public:
  Prepared() = default;
  Prepared(Store& store, std::string_view sql);

  /// A text is not copied: it must live until Reset or the next Bind of that parameter.
  void Bind(int parameter, const Stored& value);
  void BindText(int parameter, std::string_view text);
  /// True with a row, false at the end. Throws Error.
  bool Step();
  void Reset();
  /// Steps to the end.
  void Run();

  explicit operator bool() const { return statement_ != nullptr; }
  sqlite3_stmt* Raw() const { return statement_.get(); }
  bool IsNull(int column) const;
  std::int64_t Integer(int column) const;
  /// Lives until the next Step or Reset.
  std::string_view Text(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  Store* store_ = nullptr;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// A column of the row that a statement stands on; a text lives until the next step or reset.
Stored ReadColumn(sqlite3_stmt* statement, int column, const ColumnType& type);

enum class OpenMode { Existing, Create };

/// One open database file, with the system's collation and functions.
class Store {
 public:
  /// `name` is the database's name for messages. Throws Error: native 824 for a damaged file, 1222 for a lock.
  Store(const std::filesystem::path& file, std::string name, OpenMode mode, int timeoutSeconds);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  const std::string& Name() const { return name_; }
  void Run(std::string_view sql);
  Prepared Prepare(std::string_view sql) { return Prepared(*this, sql); }
  /// First column of the first row, 0 without one.
  std::int64_t Number(std::string_view sql);

  std::int64_t Changes() const;
  std::int64_t LastInsertKey() const;
  bool InTransaction() const;

  /// Statements that run past the moment are interrupted (native 1222); without an argument they may take their time.
  void SetDeadline();
  void ClearDeadline() { deadline_ = {}; }
  /// Statements, and waits for a lock, end with 596 once the condition holds.
  void StopWhen(std::function<bool()> killed) { killed_ = std::move(killed); }

  FunctionContext& Functions() { return functions_; }
  /// Gives the error for a violated key, from the store's own words for it.
  void OnDuplicate(std::function<Error(std::string_view)> translate) { duplicate_ = std::move(translate); }

  sqlite3* Raw() const { return handle_.get(); }
  /// The error for a failed call, as the server words it.
  [[noreturn]] void Fail(int result);

 private:
  struct Close {
    void operator()(sqlite3* handle) const;
  };
  static int OnProgress(void* self);
  static int OnBusy(void* self, int tries);
  bool Killed() const { return killed_ && killed_(); }
  Error Translate(int result);

  std::string name_;
  int timeoutSeconds_;
  std::chrono::steady_clock::time_point deadline_{};
  std::chrono::steady_clock::time_point waitStart_{};
  std::function<bool()> killed_;
  FunctionContext functions_;
  std::function<Error(std::string_view)> duplicate_;
  std::unique_ptr<sqlite3, Close> handle_;
};

/// A write of several statements that is kept whole or not at all: a transaction of its own, or a savepoint inside one
/// that runs already. Undone by the destructor unless Keep() was called.
class AtomicWrite {
 public:
  explicit AtomicWrite(Store& store);
  ~AtomicWrite();
  AtomicWrite(const AtomicWrite&) = delete;
  AtomicWrite& operator=(const AtomicWrite&) = delete;

  void Keep();

 private:
  Store& store_;
  bool nested_;
  bool open_ = true;
};

/// Reads of several statements that see one state of the file, whatever other connections write meanwhile.
class Snapshot {
 public:
  explicit Snapshot(Store& store);
  ~Snapshot();
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

 private:
  Store& store_;
};

/// A name between double quotes, a text between single ones, as the store writes them.
std::string QuoteName(std::string_view name);
std::string QuoteText(std::string_view text);

}  // namespace korvel::data::embedded
