#include "cli/written_files.h"

#include <fmt/format.h>

#include <filesystem>
#include <ostream>

#include "cli/failures.h"
#include "toolkit/options.h"
#include "toolkit/text.h"

namespace korvel::cli {

void RequireFolder(const std::string& folder, const std::string& blankText) {
  if (toolkit::IsBlank(folder)) throw Refusal(blankText);
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error))
    throw Refusal(fmt::format("A pasta {} não existe.", folder));
}

void ListFiles(std::ostream& out, const std::vector<std::string>& files, const toolkit::Marks& marks) {
  for (const std::string& file : files) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    out << fmt::format("{}  {}\n", file, error ? "?" : toolkit::Ficheiros_Tamanho_str(size, marks));
  }
}

}  // namespace korvel::cli
