#include "report/ReportStream.h"
