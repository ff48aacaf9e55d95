// libFuzzer target: tavrelle-batch's command line. The bytes are the arguments, separated by
// NUL bytes. The parser must take them or refuse them with std::invalid_argument, the one
// refusal the program turns into a usage message; anything else escaping, or any crash, is a
// finding.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "batch/BatchOptions.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> arguments(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0)
            arguments.emplace_back();
        else
            arguments.back().push_back(static_cast<char>(data[i]));
    }
    try {
        const auto options = tavrelle::ParseBatchOptions(arguments);
        static_cast<void>(options);
    } catch (const std::invalid_argument&) {
    }
    return 0;
}
