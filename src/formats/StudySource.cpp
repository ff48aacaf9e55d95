#include "formats/StudySource.h"

#include <stdexcept>

#include "formats/DataFileReading.h"
#include "formats/SheetReaders.h"
#include "population/FileKind.h"
#include "population/GenotypeTables.h"
#include "population/InputDataSource.h"
#include "run/StudyRun.h"

namespace tavrelle {

StudyFile LoadStudyFile(const std::string& file, const std::string& sheet) {
    if (std::optional<GenotypeRead> read = ReadNewFormatFile(file, sheet)) {
        if (!read->Ok())
            throw std::runtime_error("Could not load " + file + ":\n" + read->ProblemText());
        StudyFile study;
        study.title = read->data.title;
        for (std::size_t p = 0; p < read->data.populations.size(); ++p)
            study.populations.push_back({static_cast<int>(p) + 1, PopulationTable(read->data, p)});
        return study;
    }
    const FileKind kind = KindOfFile(file);
    std::unique_ptr<ExcelSheetReader> reader = MakeExcelSheetReader(kind);
    StoreRequest request;
    request.fileLocation = file;
    request.isExcel = IsExcelKind(kind);
    request.excelSheetName = sheet;
    request.excelReader = reader.get();
    RecordingPrompter prompter;
    StudyFile study;
    study.isExcel = request.isExcel;
    try {
        InputDataSource store(request, prompter);
        if (store.LocusNames().front().empty()) {
            std::string reason;
            for (const Message& message : prompter.messages)
                reason += " " + message.text;
            throw std::runtime_error("Could not load " + file + "." + reason);
        }
        study.title = store.TitleLine();
        study.populations = StudyPopulations(store);
    } catch (const ProgramError& error) {
        throw std::runtime_error("Could not load " + file + ": " + error.Description());
    }
    return study;
}

}  // namespace tavrelle
