#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace korvel::toolkit {

/// A file that could not be made, read or written. what() is Portuguese and names the file and the cause.
class FileError : public std::runtime_error {
 public:
  FileError(std::string_view action, std::string_view file, int error);

  /// The system's errno.
  int Number() const { return error_; }

 private:
  int error_;
};

/// A stretch of what was appended to a sink, by its positions.
struct ByteRange {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

/// The bytes of a file on their way out, gathered in one large buffer. A file counts as written only once
/// Finish() has returned; a sink dropped without it leaves what stood under the file's name as it was.
class FileSink {
 public:
  static constexpr std::size_t kBufferBytes = 512 * 1024;

  virtual ~FileSink() = default;
  FileSink(const FileSink&) = delete;
  FileSink& operator=(const FileSink&) = delete;

  /// Throws FileError when the buffer has to go out and cannot.
  void Append(std::string_view bytes);
  /// Room for `count` bytes, at most kBufferBytes: write up to that many there, then tell Commit where they end.
  char* Reserve(std::size_t count) {
    if (used_ + count > kBufferBytes) SendBuffer();
    return buffer_.get() + used_;
  }
  void Commit(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }

  /// Bytes appended since the sink was made.
  std::uint64_t Position() const { return sent_ + used_; }

  /// Sends what is left and makes the file whole. Throws FileError; the file's name is untouched then.
  void Finish();

 protected:
  FileSink() : buffer_(std::make_unique<char[]>(kBufferBytes)) {}

  /// Writes all of `bytes` or throws FileError.
  virtual void Send(std::string_view bytes) = 0;
  /// All bytes were sent: puts the file under its name.
  virtual void Complete() = 0;
  /// Sends what is gathered so far.
  void SendBuffer();

 private:
  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  std::uint64_t sent_ = 0;
};

}  // namespace korvel::toolkit
