#include "batch/BatchInput.h"

#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "base/AtomicFile.h"
#include "base/ProgramError.h"
#include "base/Sha256.h"
#include "base/TemporaryFolder.h"
#include "batch/DataConversion.h"
#include "formats/GenotypeWorkbooks.h"
#include "population/GenepopText.h"
#include "population/LineInput.h"
#include "population/TextRecords.h"

namespace tavrelle {

namespace {

[[noreturn]] void Refuse(const GenotypeRead& read) {
    // One problem is one located line; several are counted first.
    if (read.problemCount == 1)
        throw std::runtime_error("Could not load " + LocatedText(read.file, read.problems[0]));
    throw std::runtime_error("Could not load " + read.file + ": " + RefusalText(read));
}

// Whether the store's own Genepop load takes a three-digit file the reader has taken: it refuses
// a blank line among the samples and a tab between genotypes, which the reader reads (and says
// where, had anything been wrong).
bool StoreTakesGenepop(std::string_view bytes) {
    bool body = false;
    for (const NumberedLine& line : SplitLines(bytes)) {
        if (IsGenepopPopLine(line.text)) {
            body = true;
            continue;
        }
        if (!body) continue;
        const std::size_t comma = line.text.find(',');
        if (comma == std::string_view::npos) return false;
        std::string_view genotypes = line.text.substr(comma + 1);
        const std::size_t start = genotypes.find_first_not_of(" \t");
        const std::size_t end = genotypes.find_last_not_of(" \t");
        if (start != std::string_view::npos &&
            genotypes.substr(start, end - start + 1).find('\t') != std::string_view::npos)
            return false;
    }
    return true;
}

}  // namespace

BatchInput::BatchInput(const BatchOptions& options, bool keepStoreData) {
    const bool standardInput = options.file == "-";
    const std::string shown = standardInput ? "standard input" : options.file;
    loadPath = standardInput ? "/dev/stdin" : options.file;
    std::error_code error;
    if (!standardInput && std::filesystem::is_directory(options.file, error))
        throw std::runtime_error(options.file + ": a directory, not a data file");
    std::string bytes;
    try {
        bytes = ReadWholeFile(loadPath);
        sha256 = Sha256Hex(bytes);
    } catch (const ProgramError&) {
        // Missing and unreadable files are the store's to tell, as the desktop tells them.
        storeLoad = true;
        kind = KindOfFile(options.file);
        return;
    }
    format = options.format ? options.format->format : DetectFormat(bytes);
    if (format == DataFormat::Unknown && bytes.empty()) {
        // The store says an empty file is empty.
        storeLoad = true;
        kind = KindOfFile(options.file);
    } else if (format == DataFormat::Xls || format == DataFormat::Xlsx) {
        kind = format == DataFormat::Xls ? FileKind::Xls : FileKind::Xlsx;
        if (!standardInput) read = ReadGenalexWorkbook(options.file, format, options.sheet);
        storeLoad = !read;
    } else {
        read = ReadGenotypeText(bytes, shown, options.format.value_or(FormatChoice{format, {}}));
        storeLoad = format == DataFormat::Genepop && GenepopAlleleDigits(bytes) == 3 &&
                    StoreTakesGenepop(bytes);
    }
    if (read && !read->Ok()) Refuse(*read);
    if (read)
        for (const ReadProblem& note : read->notes)
            notes.push_back(LocatedText(shown, note));
    if (format == DataFormat::Genepop && GenepopAlleleDigits(bytes) == 2)
        notes.push_back(shown +
                        ": two digits per allele, read as the numbers they are; the stutter and "
                        "large allele drop-out tests need allele sizes in base pairs.");
    if (storeLoad && !keepStoreData) read.reset();
    if (storeLoad && standardInput) {
        // The store reads by name; standard input can be read only once.
        temporary_ = (TemporaryFolder() / ("tavrelle-input-" + std::to_string(::getpid()) +
                                           (kind == FileKind::Xlsx  ? ".xlsx"
                                            : kind == FileKind::Xls ? ".xls"
                                                                    : ".gen")))
                         .string();
        if (const int failure = WriteFileAtomically(temporary_, bytes); failure != 0)
            throw std::runtime_error(WriteFailure(temporary_, failure));
        loadPath = temporary_;
    }
}

BatchInput::~BatchInput() {
    if (!temporary_.empty()) std::filesystem::remove(temporary_);
}

}  // namespace tavrelle
