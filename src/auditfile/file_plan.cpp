#include "auditfile/file_plan.h"

#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <utility>

#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::auditfile {
namespace {

constexpr std::size_t kMonthAt = 5;
constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> kEndings{{
    {"I", "_Saft_Integrado.XML"},
    {"C", "_Saft_Contabilidade.XML"},
    {"F", "_Saft_Facturação.XML"},
}};

std::string_view EndingOf(std::string_view basis) {
  for (const auto& [letter, ending] : kEndings) {
    if (letter == basis) return ending;
  }
  return {};
}

std::string WithSeparator(std::string_view folder) {
  std::string text(folder);
  if (toolkit::IsBlank(folder)) return {};
  if (text.back() != kSeparator && text.back() != '/') text += kSeparator;
  return text;
}

}  // namespace

int MonthOf(std::string_view date) {
  if (date.size() <= kMonthAt) return 0;
  return static_cast<int>(toolkit::NumericPrefix(date.substr(kMonthAt)).Whole());
}

std::string MonthFilter(int month, int first, bool cumulative) {
  if (month == 0) return {};
  if (!cumulative) return fmt::format(" and convert(int,period)= {}", month);
  return fmt::format(" and convert(int,period)>= {} and convert(int,period)<= {}", first, month);
}

std::string NameStem(const periods::PeriodKey& period) {
  return period.startDate + "_" + period.endDate;
}

std::string FilePath(const FileNaming& naming, std::string_view stem, int month) {
  const std::string_view ending = EndingOf(naming.basis);
  if (ending.empty()) return std::string(stem);
  const std::string ofMonth = month == 0 ? "" : fmt::format("_{}", month);
  return fmt::format("{}{}_{}_{}{}{}", WithSeparator(naming.folder), naming.taxNumber,
                     toolkit::CutTo(stem, 4), stem, ofMonth, ending);
}

}  // namespace korvel::auditfile
