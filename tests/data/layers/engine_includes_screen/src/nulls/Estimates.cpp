#include "nulls/screens/frmNullAllele.h"
