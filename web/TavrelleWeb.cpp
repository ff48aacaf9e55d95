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
#include "base/ProgramError.h"
#include "base/Version.h"
#include "batch/BatchOptions.h"
#include "batch/LocusMotifs.h"
#include "population/ExcelTexts.h"
#include "population/FileKind.h"
#include "population/InputDataSource.h"
#include "report/ReportStream.h"
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

// The store of a data file as the open command loads it; a file that does not load throws
// std::runtime_error with what the batch program would print.
struct LoadedFile {
    explicit LoadedFile(const std::string& file) {
        if (IsExcelKind(KindOfFile(file))) throw std::runtime_error(file + kWorkbookRefusal);
        StoreRequest request;
        request.fileLocation = file;
        try {
            store = std::make_unique<InputDataSource>(request, prompter);
        } catch (const ProgramError& error) {
            throw std::runtime_error("Could not load " + file + ":\n" +
                                     std::string(kOpenErrorCaption) + ": " + error.Description());
        }
        if (!store->LocusNames().front().empty()) return;
        std::string message = "Could not load " + file + ":";
        if (store->PopulationOverSampleLimit() > 0)
            message += " population " + std::to_string(store->PopulationOverSampleLimit()) +
                       " has more than " + std::to_string(kLargestSampleNumber - 1) +
                       " samples, the most a population of a Genepop file may have. Divide it "
                       "into smaller populations.";
        for (const Message& m : prompter.messages)
            message += "\n" + m.text;
        if (!prompter.examples.empty())
            message +=
                "\nThe requested Genepop file is not in the required format: a title line, the "
                "locus names, then each population after a line \"Pop\".";
        throw std::runtime_error(message);
    }

    RecordingPrompter prompter;
    std::unique_ptr<InputDataSource> store;
};

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
        LoadedFile loaded(PlaceFile(name, bytes));
        val result = val::object();
        result.set("title", loaded.store->TitleLine());
        result.set("loci", StringList(loaded.store->LocusNames()));
        result.set("populations", static_cast<int>(StudyPopulations(*loaded.store).size()));
        return result;
    } catch (const std::exception& error) {
        return Failure(error.what(), false);
    }
}

// The reports of the batch program, each a text made one population at a time.
struct Reports {
    struct Entry {
        const char* name;
        std::unique_ptr<ReportStream> stream;
        std::string text;
    };
    std::vector<Entry> entries;

    template <typename Piece>
    void Write(Piece piece) {
        for (Entry& entry : entries)
            entry.text += piece(*entry.stream);
    }
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
        options.threads = 1;

        std::ostringstream notes;
        LoadedFile loaded(file);
        InputDataSource& store = *loaded.store;
        StudySettings settings;
        settings.repeatByLocus = MotifsOfLoci(store.LocusNames(), options.repeatByLocus, {},
                                              options.repeatForAll, notes);
        std::vector<StudyPopulation> chosen;
        if (options.populations.empty()) {
            chosen = StudyPopulations(store);
        } else {
            int count = 0;
            chosen = StudyPopulations(store, options.populations, count);
            for (int number : options.populations)
                if (number > count)
                    throw BatchUsageError(
                        "--population: " + file + " has " + std::to_string(count) +
                        " population(s): there is no population " + std::to_string(number) + ".");
        }
        store.rsAllData = Table();
        store.rsAlleleData = Table();

        BatchHeader header;
        header.file = file;
        header.title = store.TitleLine();
        header.clockSeed = !options.seed;
        header.seed = options.seed ? *options.seed : SeedFromClock();
        header.randomisations = options.randomisations;
        header.confidenceCode = options.confidenceCode;
        header.maxAlleleSize = static_cast<Int16>(std::stoi(options.maxAlleleSize));

        settings.seed = header.seed;
        settings.randomisations = options.randomisations;
        settings.confidenceCode = options.confidenceCode;
        settings.repeatForAll = options.repeatForAll;
        settings.maxAlleleSize = options.maxAlleleSize;
        settings.onSuspect = options.onSuspect;
        settings.tableFolder = kTableFolder;
        settings.threads = 1;
        settings.bootstrap = options.bootstrap;

        Reports reports;
        reports.entries.push_back({"json", MakeJsonReport(), {}});
        reports.entries.push_back({"csv", MakeCsvReport(), {}});
        reports.entries.push_back({"report", MakeHtmlReport(settings), {}});
        reports.Write([&](ReportStream& stream) { return stream.Begin(header); });
        const int total = static_cast<int>(chosen.size());
        int done = 0;
        int analysed = 0;
        RunStudy(chosen, settings, [&](PopulationResult&& population) {
            if (population.stopReason == StopReason::SuspectValues && population.action == "stop")
                population.error->insert(population.error->size() - 1, " (--on-suspect stop)");
            analysed += population.Analysed() ? 1 : 0;
            reports.Write([&](ReportStream& stream) { return stream.Population(population); });
            ++done;
            if (progress.typeOf().as<std::string>() == "function")
                progress(done, total, population.number, population.name, population.Analysed());
        });
        reports.Write([&](ReportStream& stream) { return stream.End(); });

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
