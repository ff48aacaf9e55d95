#include "analysis/ClockSeed.h"

#include <ctime>

#include "base/Int16.h"

namespace tavrelle {

namespace {

// Days from 1970-01-01 to a date of the proleptic Gregorian calendar.
std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2 ? 1 : 0;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3U : 9U)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

}  // namespace

std::int64_t SecondsSince2003(int year, int month, int day, int hour, int minute, int second) {
    std::int64_t days =
        DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) -
        DaysFromCivil(2003, 1, 1);
    return days * 86400 + hour * 3600 + minute * 60 + second;
}

std::int32_t SeedFromClock() {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return Narrow32(SecondsSince2003(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                                     local.tm_hour, local.tm_min, local.tm_sec));
}

}  // namespace tavrelle
