// libFuzzer target: bytes through the Genalex text reader, and what it reads back through the
// writers.
#include "FuzzGenotypeText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tavrelle::fuzz::ReadGenotypeBytes(data, size, {tavrelle::DataFormat::Genalex, {}});
}
