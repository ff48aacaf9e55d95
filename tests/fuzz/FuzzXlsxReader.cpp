// libFuzzer target: .xlsx bytes through the open command's load (libzip, expat and the sheet
// reader).
#include "FuzzDataFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tavrelle::fuzz::LoadDataFile(data, size, ".xlsx");
}
