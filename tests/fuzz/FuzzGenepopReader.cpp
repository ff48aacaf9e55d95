// libFuzzer target: Genepop bytes through the open command's load (the line reader, the Genepop
// reader and the store).
#include "FuzzDataFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tavrelle::fuzz::LoadDataFile(data, size, ".gen");
}
