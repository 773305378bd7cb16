#include "support/temp_folder.h"

#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace korvel::test {

TempFolder::TempFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "korvel_test_XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make the temporary folder " + name);
  path_ = name;
}

TempFolder::~TempFolder() {
  std::error_code ignored;  // a folder that cannot be removed is left to the system's own cleaning
  std::filesystem::remove_all(path_, ignored);
}

std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

}  // namespace korvel::test
