#include "session/frmMain.h"
