#include "formats/StudySource.h"

#include <stdexcept>

#include "formats/SheetReaders.h"
#include "run/StudyRun.h"

namespace tavrelle {

StudyFile LoadStudyFile(const std::string& file, const std::string& sheet) {
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
