#include "toolkit/file_sink.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace korvel::toolkit {
namespace {

constexpr std::array<std::pair<int, std::string_view>, 13> kCauses{{
    {ENOSPC, "não há espaço em disco"},
    {EDQUOT, "a quota de disco foi excedida"},
    {EFBIG, "o ficheiro excede o tamanho permitido"},
    {EACCES, "acesso negado"},
    {EPERM, "operação não permitida"},
    {EROFS, "o disco só permite leitura"},
    {ENOENT, "o ficheiro ou a pasta não existe"},
    {ENOTDIR, "o caminho não é uma pasta"},
    {EISDIR, "já existe uma pasta com esse nome"},
    {ENAMETOOLONG, "o nome é demasiado longo"},
    {EMFILE, "demasiados ficheiros abertos"},
    {EBUSY, "o ficheiro está a ser utilizado"},
    {EIO, "erro de leitura ou escrita no disco"},
}};

std::string CauseText(int error) {
  const auto cause =
      std::find_if(kCauses.begin(), kCauses.end(), [&](auto& row) { return row.first == error; });
  return cause != kCauses.end() ? std::string(cause->second) : fmt::format("erro {} do sistema", error);
}

}  // namespace

FileError::FileError(std::string_view action, std::string_view file, int error)
    : std::runtime_error(fmt::format("Não foi possível {} \"{}\": {}", action, file, CauseText(error))),
      error_(error) {}

void FileSink::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t piece = std::min(bytes.size(), kBufferBytes);
    char* room = Reserve(piece);
    std::memcpy(room, bytes.data(), piece);
    Commit(room + piece);
    bytes.remove_prefix(piece);
  }
}

void FileSink::Finish() {
  SendBuffer();
  Complete();
}

void FileSink::SendBuffer() {
  if (used_ == 0) return;
  Send({buffer_.get(), used_});
  sent_ += used_;
  used_ = 0;
}

}  // namespace korvel::toolkit
