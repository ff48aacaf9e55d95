#include "formats/StudySource.h"

#include <stdexcept>

#include "formats/DataFileReading.h"
#include "formats/SheetReaders.h"
#include "population/FileKind.h"
#include "population/GenotypeTables.h"
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
    RecordingPrompter prompter;
    OpenedDataFile opened = OpenDataFile(file, kind, sheet, prompter);
    if (opened.error) throw std::runtime_error("Could not load " + opened.error->Located() + ".");
    StudyFile study;
    study.isExcel = IsExcelKind(kind);
    study.title = opened.store->TitleLine();
    study.populations = StudyPopulations(*opened.store);
    return study;
}

}  // namespace tavrelle
