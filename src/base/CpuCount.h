#pragma once

namespace tavrelle {

// The CPUs this process may run on (its affinity, so a 1-CPU slot on a large node counts 1),
// at least 1.
int AvailableCpuCount();

}  // namespace tavrelle
