#pragma once

namespace tavrelle {

// Makes the icons built into the program's library available; safe to call more than once.
void LoadResources();

}  // namespace tavrelle
