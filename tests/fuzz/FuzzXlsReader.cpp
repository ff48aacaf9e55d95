// libFuzzer target: .xls bytes through the open command's load (FreeXL and the sheet reader).
#include "FuzzDataFile.h"

// libgsf keeps a few directory entries when it gives up on a corrupt OLE2 directory, which no
// change of ours can avoid. The full unwinder shows the library's frames to the suppression.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:gsf_infile_msole_new\n";
}
extern "C" const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tavrelle::fuzz::LoadDataFile(data, size, ".xls");
}
