#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "base/Prompter.h"
#include "formats/SheetReaders.h"
#include "population/FileKind.h"
#include "population/InputDataSource.h"

namespace tavrelle::fuzz {

// One input through the open command's whole load: the bytes become a file whose name ends as
// given, which tells its kind; the store reads a Genepop file, or sheet "Sheet1" of a workbook
// with the kind's reader. A file that cannot be opened raises ProgramError, which the command
// turns into its "Error Opening File" box; every other outcome is a load or a refusal. Anything
// else escaping, or any crash, is a finding.
inline int LoadDataFile(const std::uint8_t* data, std::size_t size, const char* ending) {
    // One file for the whole run, removed when the fuzzer ends.
    struct ScratchFile {
        std::string path;
        ~ScratchFile() { std::remove(path.c_str()); }
    };
    static const ScratchFile scratch{[ending] {
        std::filesystem::path folder = std::filesystem::exists("/dev/shm")
                                           ? "/dev/shm"
                                           : std::filesystem::temp_directory_path();
        return (folder / ("tavrelle-fuzz-" + std::to_string(::getpid()) + ending)).string();
    }()};
    const std::string& file = scratch.path;
    std::FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr) return 0;
    if (size > 0) std::fwrite(data, 1, size, out);
    std::fclose(out);

    const FileKind kind = KindOfFile(file);
    std::unique_ptr<ExcelSheetReader> reader = MakeExcelSheetReader(kind);
    StoreRequest request;
    request.fileLocation = file;
    request.isExcel = IsExcelKind(kind);
    request.excelSheetName = "Sheet1";
    request.excelReader = reader.get();
    RecordingPrompter prompter;
    // The all-numeric names question is answered OK on every other input, to reach both ways.
    if (size % 2 == 1) prompter.answers.push_back(MessageAnswer::Ok);
    try {
        InputDataSource store(request, prompter);
        // A loaded store must be walkable population by population.
        if (!store.LocusNames().front().empty()) {
            while (store.IsAnotherPop())
                store.NextPopulation();
        }
    } catch (const ProgramError&) {
    }
    return 0;
}

}  // namespace tavrelle::fuzz
