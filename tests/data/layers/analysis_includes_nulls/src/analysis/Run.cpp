#include "nulls/NullAlleleEstimates.h"
