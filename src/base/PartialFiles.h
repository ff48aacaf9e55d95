#pragma once

#include <string>

namespace tavrelle {

// The partial files being written at this moment, so that an interrupted program removes them:
// a report or a save cut short by Ctrl-C or a job's time limit leaves nothing half written
// beside its target. The list is fixed in size and read without locks, as a signal handler must.
class PartialFiles {
public:
    // Records `path` until Forget; returns a slot to give back, or -1 when the list is full (the
    // file is then simply not removed on a signal).
    static int Remember(const std::string& path);
    static void Forget(int slot);

    // Removes every partial file on SIGINT, SIGTERM and SIGHUP, then ends the program as the
    // signal would have. Call once, early in main.
    static void RemoveOnSignal();
};

}  // namespace tavrelle
