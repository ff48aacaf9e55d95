#include "batch/BatchReport.h"
