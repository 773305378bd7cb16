#include "toolkit/regional.h"

#include <algorithm>
#include <array>

#include "toolkit/text.h"

namespace korvel::toolkit {
namespace {

constexpr std::string_view kSection = "Regional";

struct Entry {
  std::string_view key;
  std::string Regional::*value;
};
constexpr std::array<Entry, 6> kEntries = {{{"sDecimal", &Regional::decimalSeparator},
                                            {"sThousand", &Regional::thousandsSeparator},
                                            {"sGrouping", &Regional::grouping},
                                            {"sShortDate", &Regional::shortDate},
                                            {"sDate", &Regional::dateSeparator},
                                            {"sTime", &Regional::timeSeparator}}};

bool HasOrder(std::string_view format, std::string_view separator, std::string_view year) {
  std::array<std::string_view, 3> parts = {"DD", "MM", year};
  std::sort(parts.begin(), parts.end());
  do {
    std::string order;
    for (const std::string_view part : parts) order.append(order.empty() ? "" : separator).append(part);
    if (order == format) return true;
  } while (std::next_permutation(parts.begin(), parts.end()));
  return false;
}

void NormaliseDate(Regional& values) {
  const std::string format = Upper(values.shortDate);
  const bool hasY = format.find('Y') != std::string::npos;
  if (!HasOrder(format, values.dateSeparator, hasY ? "YYYY" : "AAAA")) {
    values.shortDate = hasY ? "dd-MM-yyyy" : "dd-MM-aaaa";
  }
  const bool number = !values.dateSeparator.empty() && SoDigitos(values.dateSeparator);
  if (number || IsBlank(values.dateSeparator)) values.dateSeparator = "-";
}

void NormaliseNumbers(Regional& values) {
  if (values.decimalSeparator == "-") values.decimalSeparator = ".";
  if (values.thousandsSeparator == "-") values.thousandsSeparator = ",";
  if (values.decimalSeparator != values.thousandsSeparator) return;
  values.thousandsSeparator = ",";
  values.decimalSeparator = ".";
}

}  // namespace

Regional ReadRegional(const Settings& settings) {
  Regional values;
  for (const Entry& entry : kEntries) {
    if (auto kept = settings.Read(kSection, entry.key)) values.*entry.value = *std::move(kept);
  }
  values.grouping = CutTo(values.grouping, 1);
  return values;
}

Regional NormaliseRegional(Regional values) {
  NormaliseDate(values);
  NormaliseNumbers(values);
  return values;
}

Regional LoadRegional(Settings& settings) {
  const Regional read = ReadRegional(settings);
  Regional values = NormaliseRegional(read);
  for (const Entry& entry : kEntries) {
    if (values.*entry.value != read.*entry.value) settings.Write(kSection, entry.key, values.*entry.value);
  }
  return values;
}

}  // namespace korvel::toolkit
