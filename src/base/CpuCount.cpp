#include "base/CpuCount.h"

#include <algorithm>
#include <thread>

#if defined(__linux__)
#include <sched.h>
#endif

namespace tavrelle {

int AvailableCpuCount() {
#if defined(__linux__)
    // The CPUs this process may run on, which a container or taskset may keep below the machine's.
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) == 0) return std::max(1, CPU_COUNT(&set));
#endif
    return static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
}

}  // namespace tavrelle
