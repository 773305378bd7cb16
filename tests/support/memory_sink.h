#pragma once

#include <cerrno>
#include <limits>
#include <string>

#include "toolkit/file_sink.h"

namespace korvel::test {

/// Keeps what is sent to it. Past `limit` bytes the disk is full.
class MemorySink final : public toolkit::FileSink {
 public:
  explicit MemorySink(std::size_t limit = std::numeric_limits<std::size_t>::max()) : limit_(limit) {}

  std::string bytes;
  bool complete = false;

 protected:
  void Send(std::string_view piece) override {
    if (bytes.size() + piece.size() > limit_) throw toolkit::FileError("escrever", "memória", ENOSPC);
    bytes.append(piece);
  }
  void Complete() override { complete = true; }

 private:
  std::size_t limit_;
};

}  // namespace korvel::test
