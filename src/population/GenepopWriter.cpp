#include "population/GenepopWriter.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "base/Numbers.h"
#include "population/FileErrors.h"

namespace tavrelle {

namespace {

constexpr const char* kLineEnd = "\r\n";

// The save was given up at the disk-not-ready question; no further message follows.
struct SaveCancelled {};

class GenepopTextFile {
public:
    GenepopTextFile(const std::string& fileName, Prompter& prompter) : prompter_(prompter) {
        Repeating([&] {
            errno = 0;
            file_.reset(std::fopen(fileName.c_str(), "wb"));
            return file_ != nullptr;
        });
    }

    void WriteLine(std::string_view line) {
        std::string text(line);
        text += kLineEnd;
        Repeating([&] {
            errno = 0;
            std::clearerr(file_.get());
            return std::fwrite(text.data(), 1, text.size(), file_.get()) == text.size();
        });
    }

    void Close() {
        Repeating([&] {
            errno = 0;
            return std::fflush(file_.get()) == 0;
        });
        file_.reset();
    }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

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
    std::unique_ptr<std::FILE, Closer> file_;
};

std::string AlleleText(const std::string& allele) {
    return allele == "0" ? "000" : allele;
}

void WriteGenepop(GenepopTextFile& file, InputDataSource& store, const std::string& title,
                  bool gridIsNew, bool isExcel) {
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
            if (isExcel) all.MoveNext();
        } else {
            line = all.Field(1) + "\t,\t";
            for (int column = 2; column <= columnCount - 2; column += 2) {
                if (column > 2) line += ' ';
                line += AlleleText(all.Field(column)) + AlleleText(all.Field(column + 1));
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
    try {
        GenepopTextFile file(fileName, prompter);
        WriteGenepop(file, store, title, gridIsNew, isExcel);
        return SaveOutcome::Saved;
    } catch (const SaveCancelled&) {
        return SaveOutcome::Failed;
    } catch (const ProgramError& error) {
        ReportSaveFailure(error, prompter);
        return SaveOutcome::Failed;
    }
}

}  // namespace tavrelle
