#pragma once

#include <string>
#include <string_view>

#include "toolkit/file_sink.h"

namespace korvel::auditfile {

/// Pieces of a file that are made out of their order: they wait in memory until they are appended where they belong.
class PieceBuffer final : public toolkit::FileSink {
 public:
  /// The bytes between two positions since the last Clear; the view lives until the next append.
  std::string_view Bytes(const toolkit::ByteRange& range) {
    SendBuffer();
    return std::string_view(bytes_).substr(range.begin - cleared_, range.end - range.begin);
  }
  /// Forgets the bytes and keeps their memory. Positions go on.
  void Clear() {
    SendBuffer();
    bytes_.clear();
    cleared_ = Position();
  }

 protected:
  void Send(std::string_view piece) override { bytes_.append(piece); }
  void Complete() override {}

 private:
  std::string bytes_;
  std::uint64_t cleared_ = 0;
};

}  // namespace korvel::auditfile
