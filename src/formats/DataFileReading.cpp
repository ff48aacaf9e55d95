#include "formats/DataFileReading.h"

#include <filesystem>

#include "base/ProgramError.h"
#include "formats/GenotypeWorkbooks.h"
#include "population/GenepopText.h"
#include "population/LineInput.h"

namespace tavrelle {

std::optional<GenotypeRead> ReadNewFormatFile(const std::string& file, const std::string& sheet,
                                              FormatChoice choice) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
    std::string bytes;
    try {
        bytes = ReadWholeFile(file);
    } catch (const ProgramError&) {
        return std::nullopt;
    }
    if (choice.format == DataFormat::Unknown) choice.format = DetectFormat(bytes);
    switch (choice.format) {
        case DataFormat::Unknown:
            return std::nullopt;
        case DataFormat::Xls:
        case DataFormat::Xlsx:
            return ReadGenalexWorkbook(file, choice.format, sheet);
        case DataFormat::Genepop: {
            if (GenepopAlleleDigits(bytes) == 3) return std::nullopt;
            return ReadGenepopText(bytes, file);
        }
        case DataFormat::Genalex:
        case DataFormat::Structure:
        case DataFormat::Tidy:
            break;
    }
    return ReadGenotypeText(bytes, file, choice);
}

}  // namespace tavrelle
