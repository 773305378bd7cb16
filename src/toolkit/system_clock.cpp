#include "toolkit/system_clock.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <string>
#include <string_view>

namespace korvel::toolkit {
namespace {

std::optional<data::DateTime> FixedMoment() {
  const char* text = std::getenv("KORVEL_HOJE");
  if (text == nullptr || *text == '\0') return std::nullopt;
  const auto moment = data::DateTime::FromText(text);
  if (moment && (moment->DateText() == text || moment->IsoText() == text)) return moment;
  throw std::invalid_argument(
      "A variável KORVEL_HOJE tem que ser AAAA-MM-DD ou AAAA-MM-DDTHH:MM:SS e não \"" + std::string(text) +
      "\"");
}

std::tm LocalTime(std::time_t moment) {
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &moment);
#else
  localtime_r(&moment, &local);
#endif
  return local;
}

}  // namespace

SystemClock::SystemClock() : fixed_(FixedMoment()) {}

data::DateTime SystemClock::Now() const {
  using std::chrono::milliseconds;
  if (fixed_) return *fixed_;
  const auto now = std::chrono::system_clock::now();
  const std::tm local = LocalTime(std::chrono::system_clock::to_time_t(now));
  const auto sinceEpoch = std::chrono::duration_cast<milliseconds>(now.time_since_epoch());
  return {local.tm_year + 1900,
          local.tm_mon + 1,
          local.tm_mday,
          local.tm_hour,
          local.tm_min,
          local.tm_sec,
          static_cast<int>(sinceEpoch.count() % 1000)};
}

}  // namespace korvel::toolkit
