#include "toolkit/whole_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "toolkit/replacing_file.h"

namespace korvel::toolkit {

std::string ReadWholeFile(const std::filesystem::path& file) {
  const auto close = [](std::FILE* open) { std::fclose(open); };
  const std::unique_ptr<std::FILE, decltype(close)> in(std::fopen(file.c_str(), "rb"), close);
  if (!in) throw FileError("ler", TextOf(file), errno);
  std::string bytes;
  std::array<char, 64 * 1024> piece;
  while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), in.get())) {
    bytes.append(piece.data(), count);
  }
  if (std::ferror(in.get()) != 0) throw FileError("ler", TextOf(file), errno);
  return bytes;
}

void ReplaceWholeFile(const std::filesystem::path& target, std::string_view bytes) {
  ReplacingFile file(target);
  file.Append(bytes);
  file.Finish();
}

}  // namespace korvel::toolkit
