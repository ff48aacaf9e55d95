#include "run/screens/frmStudyOverview.h"
