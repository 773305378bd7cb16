#include "support/tds/moments.h"

namespace korvel::tds {
namespace {

constexpr std::int64_t kTicksPerSecond = 300;
constexpr std::int64_t kMillisecondsPerDay = 86'400'000;
constexpr std::int64_t kMillisecondsPerMinute = 60'000;
constexpr std::size_t kDateTimeWidth = 8;
constexpr std::size_t kDayWidth = 3;
constexpr int kMilliDigits = 3;
constexpr std::int64_t kLastDay = 2'958'463;  // 9999-12-31, from 1900 on
constexpr std::int64_t kFirstDay = -53'690;   // 1753-01-01

std::int64_t Epoch() {
  return data::DaysFromCivil(1900, 1, 1);
}

data::DateTime Moment(std::int64_t day, std::int64_t milliseconds) {
  if (milliseconds < 0 || milliseconds >= kMillisecondsPerDay) throw WireError("no time of day");
  data::DateTime date = data::CivilFromDays(day);
  date.millisecond = static_cast<int>(milliseconds % 1000);
  date.second = static_cast<int>(milliseconds / 1000 % 60);
  date.minute = static_cast<int>(milliseconds / kMillisecondsPerMinute % 60);
  date.hour = static_cast<int>(milliseconds / (60 * kMillisecondsPerMinute));
  return date;
}

data::DateTime MomentSince1900(std::int64_t day, std::int64_t milliseconds) {
  if (day < kFirstDay || day > kLastDay) throw WireError("no day of the calendar");
  return Moment(Epoch() + day, milliseconds);
}

std::int64_t Milliseconds(const data::DateTime& date) {
  return ((std::int64_t{date.hour} * 60 + date.minute) * 60 + date.second) * 1000 + date.millisecond;
}

}  // namespace

data::DateTime ReadMoment(WireReader& in, std::size_t width) {
  if (width != kDateTimeWidth) {
    const std::int64_t day = in.U16();
    return MomentSince1900(day, in.U16() * kMillisecondsPerMinute);
  }
  const auto day = static_cast<std::int32_t>(in.U32());
  return MomentSince1900(day, (std::int64_t{in.U32()} * 1000 + kTicksPerSecond / 2) / kTicksPerSecond);
}

void WriteMoment(WireWriter& out, const data::DateTime& date, std::size_t width) {
  const std::int64_t day = data::DaysFromCivil(date.year, date.month, date.day) - Epoch();
  const std::int64_t time = Milliseconds(date);
  if (width == kDateTimeWidth) {
    out.U32(static_cast<std::uint64_t>(day))
        .U32(static_cast<std::uint64_t>((time * kTicksPerSecond + 500) / 1000));
  } else {
    out.U16(static_cast<std::uint64_t>(day)).U16(static_cast<std::uint64_t>(time / kMillisecondsPerMinute));
  }
}

data::DateTime ReadNewMoment(WireReader& in, std::size_t timeWidth, int scale, bool withDay) {
  auto time = static_cast<std::int64_t>(in.Number(timeWidth));
  for (int i = scale; i > kMilliDigits; --i) time /= 10;
  for (int i = scale; i < kMilliDigits; ++i) time *= 10;
  const std::int64_t day = withDay ? static_cast<std::int64_t>(in.Number(kDayWidth)) : 0;
  const std::int64_t first = data::DaysFromCivil(1, 1, 1);
  if (first + day > Epoch() + kLastDay) throw WireError("no day of the calendar");
  return Moment(withDay ? first + day : Epoch(), time);
}

}  // namespace korvel::tds
