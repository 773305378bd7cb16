#include "data/embedded/date_text.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace korvel::data::embedded {
namespace {

struct Style {
  int number;
  std::string_view mask;
};

/// d, m, y: day, month, year in two digits, Y: year in four, b: day padded with a blank, M: month's English name,
/// H: hour, h: hour of twelve padded with a blank, n: minute, s: second, f: milliseconds, p: AM or PM.
constexpr Style kStyles[] = {
    {0, "M b Y h:np"},      {1, "m/d/y"},          {2, "y.m.d"},   {3, "d/m/y"},        {4, "d.m.y"},
    {5, "d-m-y"},           {8, "H:n:s"},          {10, "m-d-y"},  {11, "y/m/d"},       {12, "ymd"},
    {20, "Y-m-d H:n:s"},    {21, "Y-m-d H:n:s.f"}, {23, "Y-m-d"},  {100, "M b Y h:np"}, {101, "m/d/Y"},
    {102, "Y.m.d"},         {103, "d/m/Y"},        {104, "d.m.Y"}, {105, "d-m-Y"},      {108, "H:n:s"},
    {110, "m-d-Y"},         {111, "Y/m/d"},        {112, "Ymd"},   {114, "H:n:s:f"},    {120, "Y-m-d H:n:s"},
    {121, "Y-m-d H:n:s.f"}, {126, "Y-m-dTH:n:s.f"}};

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::string Padded(int number, std::size_t width, char pad) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), pad);
  return text;
}

std::string Piece(const DateTime& moment, char letter) {
  switch (letter) {
    case 'd':
      return Padded(moment.day, 2, '0');
    case 'b':
      return Padded(moment.day, 2, ' ');
    case 'm':
      return Padded(moment.month, 2, '0');
    case 'M':
      return std::string(kMonths[static_cast<std::size_t>(moment.month - 1)]);
    case 'y':
      return Padded(moment.year % 100, 2, '0');
    case 'Y':
      return Padded(moment.year, 4, '0');
    case 'H':
      return Padded(moment.hour, 2, '0');
    case 'h':
      return Padded((moment.hour + 11) % 12 + 1, 2, ' ');
    case 'n':
      return Padded(moment.minute, 2, '0');
    case 's':
      return Padded(moment.second, 2, '0');
    case 'f':
      return Padded(moment.millisecond, 3, '0');
    case 'p':
      return moment.hour < 12 ? "AM" : "PM";
    default:
      return std::string(1, letter);
  }
}

std::string_view Trim(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

}  // namespace

std::optional<DateTime> DateFromText(std::string_view text) {
  text = Trim(text);
  if (text.empty()) return DateTime{};
  const bool dayFirst = text.size() >= 10 && (text[2] == '-' || text[2] == '/') && text[5] == text[2];
  if (!dayFirst) return DateTime::FromText(text);
  std::string iso(text.substr(6, 4));
  iso.append("-").append(text.substr(3, 2)).append("-").append(text.substr(0, 2)).append(text.substr(10));
  return DateTime::FromText(iso);
}

std::optional<std::string> DateInStyle(const DateTime& moment, int style) {
  const auto* found = std::find_if(std::begin(kStyles), std::end(kStyles), [style](const Style& entry) {
    return entry.number == std::max(style, 0);
  });
  if (found == std::end(kStyles)) return std::nullopt;
  std::string text;
  for (const char letter : found->mask) text += Piece(moment, letter);
  return text;
}

}  // namespace korvel::data::embedded
