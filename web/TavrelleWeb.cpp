// The engine as the web page's worker calls it: a study run as tavrelle-batch runs it, with the
// batch program's options, checks and messages, its JSON, CSV and HTML reports, and a call per
// population for the progress bar. One thread: the browser's worker is all there is.
//
// The load and run below follow src/batch/BatchRun.cpp step for step with the engine's own API;
// when the engine opens data files and runs a study from one settings struct, this file shrinks
// to those calls.

#include <emscripten/bind.h>
#include <emscripten/val.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "analysis/ClockSeed.h"
#include "base/Numbers.h"
#include "base/ProgramError.h"
#include "base/Sha256.h"
#include "base/Version.h"
#include "batch/BatchOptions.h"
#include "population/DataFile.h"
#include "population/DataFormat.h"
#include "population/ExcelTexts.h"
#include "population/FileKind.h"
#include "population/GenepopText.h"
#include "population/GenotypeCells.h"
#include "population/InputDataSource.h"
#include "report/ReportSink.h"
#include "run/StudyDriver.h"
#include "run/StudyRun.h"

namespace tavrelle {

namespace {

using emscripten::val;

// The statistical tables are embedded in the module's file system here (scripts/build-web).
const char* const kTableFolder = "/tables";
// The visitor's file is written here, under its own name, so that every message and report names
// it as the batch program does when run in the file's folder.
const char* const kDataFolder = "/data";

const char* const kWorkbookRefusal =
    " is a workbook. Workbooks are read by the desktop and batch programs only: save the sheet "
    "from your spreadsheet program as CSV (File > Save As, CSV) and open that file here, or turn "
    "the workbook into a Genepop file with \"tavrelle-batch convert\".";

std::string PlaceFile(const std::string& name, const std::string& bytes) {
    const std::string file = std::filesystem::path(name).filename().string();
    if (file.empty()) throw std::runtime_error("The file has no name.");
    // One file at a time: the one before is dropped, so the page's memory does not grow.
    std::filesystem::current_path("/");
    std::filesystem::remove_all(kDataFolder);
    std::filesystem::create_directories(kDataFolder);
    std::filesystem::current_path(kDataFolder);
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error("Could not hold " + file + " in the page's memory.");
    return file;
}

// The store of a data file as the batch program loads it: a three-digit Genepop file by the
// store's own load, as the desktop reads it; every other text format by its reader (whose
// populations keep their names). A file that does not load throws std::runtime_error with what
// the batch program would print.
struct LoadedFile {
    LoadedFile(const std::string& file, const std::string& bytes,
               std::optional<FormatChoice> choice = std::nullopt) {
        if (IsExcelKind(KindOfFile(file))) throw std::runtime_error(file + kWorkbookRefusal);
        const DataFormat format = choice ? choice->format : DetectFormat(bytes);
        if (format == DataFormat::Xls || format == DataFormat::Xlsx)
            throw std::runtime_error(file + kWorkbookRefusal);
        if (bytes.empty() || (format == DataFormat::Genepop && GenepopAlleleDigits(bytes) == 3)) {
            OpenedDataFile opened =
                OpenDataFileWith(file, FileKind::Genepop, "", nullptr, prompter);
            if (opened.error) throw std::runtime_error("Could not load " + opened.error->Located());
            store = std::move(opened.store);
            return;
        }
        GenotypeRead read =
            ReadGenotypeText(bytes, file, choice.value_or(FormatChoice{format, {}}));
        if (!read.Ok())
            throw std::runtime_error("Could not load " + file + ":\n" + read.ProblemText());
        for (const GenotypePopulation& population : read.data.populations)
            populationNames.push_back(population.name);
        store = std::make_unique<InputDataSource>(GenotypeCells(read.data), prompter);
    }

    RecordingPrompter prompter;
    std::unique_ptr<InputDataSource> store;
    std::vector<std::string> populationNames;
};

// How many populations the store's table holds: one, and one more after each "Pop" row.
int PopulationCount(const Table& all) {
    int populations = 1;
    for (std::int64_t row = 2; row < all.RecordCount(); ++row)
        if (UpperCase(TrimBlanks(all.Cell(row, 1))) == "POP") ++populations;
    return populations;
}

val Failure(const std::string& message, bool usage) {
    val result = val::object();
    result.set("error", message);
    result.set("usage", usage);
    return result;
}

val StringList(const std::vector<std::string>& texts) {
    val list = val::array();
    for (const std::string& text : texts)
        list.call<void>("push", text);
    return list;
}

// What the page shows before a run: the title, the loci and how many populations.
val DescribeFile(const std::string& name, const std::string& bytes) {
    try {
        LoadedFile loaded(PlaceFile(name, bytes), bytes);
        val result = val::object();
        result.set("title", loaded.store->TitleLine());
        result.set("loci", StringList(loaded.store->LocusNames()));
        result.set("populations", static_cast<int>(StudyPopulations(*loaded.store).size()));
        return result;
    } catch (const std::exception& error) {
        return Failure(error.what(), false);
    }
}

// The reports of the batch program, each a text made one population at a time, and the page's
// progress as each population is written.
struct Reports : StudySink {
    struct Entry {
        const char* name;
        std::string text;
    };
    std::vector<Entry> entries;
    ReportSink sink;
    val progress = val::undefined();
    int total = 0;
    int done = 0;
    int analysed = 0;

    Reports() { entries.reserve(3); }
    void Add(const char* name, std::unique_ptr<ReportStream> stream) {
        Entry& entry = entries.emplace_back(Entry{name, {}});
        sink.Add(std::move(stream), [&entry](const std::string& piece) { entry.text += piece; });
    }
    void Begin(const StudyHeader& header) override { sink.Begin(header); }
    void Population(const PopulationResult& population) override {
        sink.Population(population);
        analysed += population.Analysed() ? 1 : 0;
        ++done;
        if (progress.typeOf().as<std::string>() == "function")
            progress(done, total, population.number, population.name, population.Analysed());
    }
    void End() override { sink.End(); }
};

// A study of the file with the batch program's command-line arguments (the options without the
// file): {json, csv, report, notes, analysed, stopped} or {error, usage}. `progress` is called
// with (populations done, populations in all, number, name, analysed) as each one finishes.
val RunStudyOfFile(const std::string& name, const std::string& bytes, val arguments, val progress) {
    try {
        std::vector<std::string> words = emscripten::vecFromJSArray<std::string>(arguments);
        const std::string file = PlaceFile(name, bytes);
        words.push_back(file);
        BatchOptions options = ParseBatchOptions(words);

        std::ostringstream notes;
        LoadedFile loaded(file, bytes, options.format);
        StudyJob job;
        job.file = file;
        job.fileSha256 = Sha256Hex(bytes);  // of the visitor's bytes, for the report's header
        job.settings = options.settings;
        if (job.settings.clockSeed) job.settings.seed = SeedFromClock();
        job.settings.tableFolder = kTableFolder;
        job.settings.threads = 1;
        job.populations = options.populations;
        job.repeatByName = options.repeatByLocus;
        job.populationNames = loaded.populationNames;

        Reports reports;
        reports.Add("json", MakeJsonReport());
        reports.Add("csv", MakeCsvReport());
        reports.Add("report", MakeHtmlReport());
        reports.progress = progress;
        reports.total = job.populations.empty() ? PopulationCount(loaded.store->AllData())
                                                : static_cast<int>(job.populations.size());
        RunStudyJob(*loaded.store, job, reports, notes);
        const int done = reports.done;
        const int analysed = reports.analysed;

        val result = val::object();
        for (const Reports::Entry& entry : reports.entries)
            result.set(entry.name, entry.text);
        result.set("notes", notes.str());
        result.set("analysed", analysed);
        result.set("stopped", done - analysed);
        return result;
    } catch (const std::invalid_argument& error) {
        // ParseBatchOptions and the motif rules: the options do not fit the file.
        return Failure(error.what(), true);
    } catch (const std::exception& error) {
        return Failure(error.what(), false);
    }
}

std::string ProgramVersion() {
    return kProgramVersion;
}

}  // namespace

}  // namespace tavrelle

EMSCRIPTEN_BINDINGS(tavrelle) {
    emscripten::function("describeFile", &tavrelle::DescribeFile);
    emscripten::function("runStudy", &tavrelle::RunStudyOfFile);
    emscripten::function("version", &tavrelle::ProgramVersion);
}
