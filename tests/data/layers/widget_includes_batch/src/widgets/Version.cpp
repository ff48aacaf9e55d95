#include "batch/BatchOptions.h"
