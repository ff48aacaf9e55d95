#include "session/Resources.h"

#include <QtGlobal>

// Resources compiled into a static library are registered by hand, outside any namespace.
static void RegisterResources() {
    Q_INIT_RESOURCE(tavrelle);
}

namespace tavrelle {

void LoadResources() {
    static const bool loaded = (RegisterResources(), true);
    (void)loaded;
}

}  // namespace tavrelle
