#include "population/GenepopWriter.h"

#include <cerrno>
#include <cstdio>

#include "base/AtomicFile.h"
#include "base/Numbers.h"
#include "population/FileErrors.h"

namespace tavrelle {

namespace {

constexpr const char* kLineEnd = "\r\n";

// The save was given up at the disk-not-ready question; no further message follows.
struct SaveCancelled {};

class GenepopTextFile {
public:
    // The lines go to a temporary file beside the target, which replaces it only when whole:
    // a failed save leaves the user's old file as it was.
    GenepopTextFile(const std::string& fileName, Prompter& prompter)
        : prompter_(prompter), file_(fileName) {
        Repeating([&] { return file_.Open(); });
    }

    void WriteLine(std::string_view line) {
        std::string text(line);
        text += kLineEnd;
        if (!file_.Write(text)) throw FileError(errno);
    }

    void Close() {
        if (!file_.Commit()) throw FileError(errno);
    }

private:
    // A drive that is not ready may be made ready: OK repeats the failed statement.
    template <typename Statement>
    void Repeating(Statement statement) {
        for (;;) {
            if (statement()) return;
            ProgramError error = FileError(errno);
            if (error.Number() != kDiskNotReady) throw error;
            MessageAnswer answer =
                prompter_.Show({"Put a floppy disk in the drive and close the drive door.\r\n" +
                                    error.Description(),
                                "", MessageIcon::Exclamation, MessageButtons::OkCancel});
            if (answer != MessageAnswer::Ok) throw SaveCancelled{};
        }
    }

    Prompter& prompter_;
    AtomicFile file_;
};

// "0" is written "000"; with padding every whole number under 100 takes three digits too, so
// that "98" reads back as 98 and not as part of its neighbour.
std::string AlleleText(const std::string& allele, bool pad) {
    if (allele == "0") return "000";
    const bool digits = !allele.empty() && allele.size() < 3 &&
                        allele.find_first_not_of("0123456789") == std::string::npos;
    if (pad && digits) return std::string(3 - allele.size(), '0') + allele;
    return allele;
}

void WriteGenepop(GenepopTextFile& file, InputDataSource& store, const std::string& title,
                  bool gridIsNew, GenepopSaveRules rules) {
    if (gridIsNew) {
        store.SaveNewPopulation();
    } else {
        store.SavePopulation();
    }
    Table& all = store.rsAllData;
    const int columnCount = store.ColumnCount();
    all.MoveFirst();
    all.Move(1);
    file.WriteLine("Title line:  \"" + title + "\"");
    for (int column = 2; column <= columnCount - 2; column += 2)
        file.WriteLine(all.Field(column));
    file.WriteLine("Pop");
    all.MoveNext();
    while (!all.Eof()) {
        std::string line;
        if (UpperCase(all.Field(1)) == "POP") {
            line = "Pop";
            // Workbook data: the row behind a separator is not written.
            if (rules.passOverRowAfterPop) all.MoveNext();
        } else {
            line = all.Field(1) + "\t,\t";
            for (int column = 2; column <= columnCount - 2; column += 2) {
                if (column > 2) line += ' ';
                line += AlleleText(all.Field(column), rules.padAlleles) +
                        AlleleText(all.Field(column + 1), rules.padAlleles);
            }
        }
        file.WriteLine(TrimBlanks(line));
        all.MoveNext();
    }
    file.Close();
}

}  // namespace

SaveOutcome SaveGenepopFile(InputDataSource& store, const std::string& fileName,
                            const std::string& title, bool gridIsNew, bool isExcel,
                            Prompter& prompter) {
    return SaveGenepopFile(store, fileName, title, gridIsNew, GenepopSaveRules{isExcel, false},
                           prompter);
}

SaveOutcome SaveGenepopFile(InputDataSource& store, const std::string& fileName,
                            const std::string& title, bool gridIsNew, GenepopSaveRules rules,
                            Prompter& prompter) {
    try {
        GenepopTextFile file(fileName, prompter);
        WriteGenepop(file, store, title, gridIsNew, rules);
        return SaveOutcome::Saved;
    } catch (const SaveCancelled&) {
        return SaveOutcome::Failed;
    } catch (const ProgramError& error) {
        ReportSaveFailure(error, prompter);
        return SaveOutcome::Failed;
    }
}

}  // namespace tavrelle
