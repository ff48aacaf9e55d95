#include "base/PartialFiles.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstring>

namespace tavrelle {

namespace {

struct Slot {
    // 0 free, 1 being filled or emptied, 2 holds a path the handler may remove.
    std::atomic<int> state{0};
    char path[4096]{};
};

std::array<Slot, 64> slots;

extern "C" void RemovePartialsAndEnd(int signal) {
    for (Slot& slot : slots)
        if (slot.state.load() == 2) unlink(slot.path);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}  // namespace

int PartialFiles::Remember(const std::string& path) {
    if (path.size() >= sizeof Slot{}.path) return -1;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        int free = 0;
        if (!slots[i].state.compare_exchange_strong(free, 1)) continue;
        std::memcpy(slots[i].path, path.c_str(), path.size() + 1);
        slots[i].state.store(2);
        return static_cast<int>(i);
    }
    return -1;
}

void PartialFiles::Forget(int slot) {
    if (slot < 0 || slot >= static_cast<int>(slots.size())) return;
    slots[static_cast<std::size_t>(slot)].state.store(1);
    slots[static_cast<std::size_t>(slot)].state.store(0);
}

void PartialFiles::RemoveOnSignal() {
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // A signal the caller chose to ignore (nohup, a background job) stays ignored.
        struct sigaction old {};
        sigaction(signal, nullptr, &old);
        if (old.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = RemovePartialsAndEnd;
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, nullptr);
    }
}

}  // namespace tavrelle
