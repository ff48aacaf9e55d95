#pragma once

#include <string>

#include "base/Prompter.h"
#include "population/InputDataSource.h"

namespace tavrelle {

// Saved: the file is complete. Failed: the failure has been told (or the save was cancelled),
// the user's old file (if any) stays as it was, and the caller refreshes the grid and runs Save As
// again so that the user can choose another name or place.
enum class SaveOutcome { Saved, Failed };

// Writes every population of the store as a Genepop file: the title line "Title line:  " and
// the quoted title (the caller passes the dialog's file title), one locus per line, "Pop", then
// sample lines "name TAB , TAB genotypes" with "0" written "000", CR LF line ends. The current
// population is saved into rsAllData first (appended when the grid was typed). Data that came
// from a workbook lose the first sample behind every separator: the writer passes that row over.
SaveOutcome SaveGenepopFile(InputDataSource& store, const std::string& fileName,
                            const std::string& title, bool gridIsNew, bool isExcel,
                            Prompter& prompter);

// How a save treats the data: the desktop's Save As passes over the row behind every separator
// of workbook data; a conversion keeps every sample and writes alleles under 100 with three
// digits, so that the file reads back as it was.
struct GenepopSaveRules {
    bool passOverRowAfterPop = false;
    bool padAlleles = false;
};

SaveOutcome SaveGenepopFile(InputDataSource& store, const std::string& fileName,
                            const std::string& title, bool gridIsNew, GenepopSaveRules rules,
                            Prompter& prompter);

}  // namespace tavrelle
