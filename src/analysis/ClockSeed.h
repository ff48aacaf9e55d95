#pragma once

#include <cstdint>

namespace tavrelle {

// The seed of a run taken from the clock: whole seconds from midnight at the start of
// 1 January 2003 to the present local date and time, counted as a calendar difference (a day is
// always 86400 seconds, whatever daylight saving did).
std::int32_t SeedFromClock();

// The same count for a given local date and time, for tests and for the clock seed itself.
std::int64_t SecondsSince2003(int year, int month, int day, int hour, int minute, int second);

}  // namespace tavrelle
