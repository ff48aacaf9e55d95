#include "formats/XlsxReader.h"
