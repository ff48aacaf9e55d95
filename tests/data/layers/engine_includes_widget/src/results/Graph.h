#include "widgets/Twips.h"
