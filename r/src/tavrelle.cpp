// The package's one door to the engine: load a data file, run a study with the batch program's
// settings and reports, and hand R plain vectors. R is called from this thread only: the study
// runs on a thread of its own, and this one waits for it, reporting progress and polling for an
// interrupt, which it passes on through the engine's cancel flag.

#include <Rcpp.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/ProgramError.h"
#include "base/Sha256.h"
#include "population/DataFile.h"
#include "population/FileKind.h"
#include "population/InputDataSource.h"
#include "population/PopulationName.h"
#include "report/ReportStream.h"
#include "run/EstimateColour.h"
#include "run/StudyDriver.h"
#include "run/StudyHeatMap.h"
#include "run/StudyRun.h"
#include "run/StudyTable.h"

using namespace tavrelle;

namespace {

using Store = std::unique_ptr<InputDataSource>;
using Load = std::function<Store(const std::string& path, Prompter& prompter)>;

Store LoadGenepop(const std::string& path, Prompter& prompter) {
    OpenedDataFile opened = OpenDataFileWith(path, FileKind::Genepop, "", nullptr, prompter);
    if (opened.error) throw std::runtime_error(opened.error->Located());
    return std::move(opened.store);
}

// The engine's readers by the names read_genotypes() takes: a new reader is one more row.
const std::map<std::string, Load>& Readers() {
    static const std::map<std::string, Load> readers = {
        {"genepop", LoadGenepop},
    };
    return readers;
}

// The format of a file from its name, as the batch program tells it.
std::string FormatOf(const std::string& path) {
    return IsExcelKind(KindOfFile(path)) ? "workbook" : "genepop";
}

// A loaded store with the prompter it reports to; a file that does not load stops with the
// messages the load showed.
struct LoadedStore {
    RecordingPrompter prompter;
    Store store;

    LoadedStore(const std::string& path, std::string format) {
        if (format.empty()) format = FormatOf(path);
        const auto reader = Readers().find(format);
        if (reader == Readers().end()) {
            std::string known;
            for (const auto& row : Readers())
                known += (known.empty() ? "'" : ", '") + row.first + "'";
            Rcpp::stop("Could not load " + path + ": the package reads " + known +
                       (format == "workbook" ? "; save workbooks as Genepop first "
                                               "(tavrelle-batch convert IN OUT)."
                                             : " files, not '" + format + "'."));
        }
        try {
            store = reader->second(path, prompter);
        } catch (const std::exception& error) {
            Rcpp::stop(std::string("Could not load ") + error.what());
        }
        if (store->LocusNames().front().empty()) {
            std::string message = "Could not load " + path + ":";
            for (const Message& m : prompter.messages)
                message += "\n" + m.text;
            if (!prompter.examples.empty())
                message += "\nGenepop files need three digits per allele, six per locus.";
            if (store->PopulationOverSampleLimit() > 0)
                message += "\npopulation " + std::to_string(store->PopulationOverSampleLimit()) +
                           " has more samples than a Genepop population may have.";
            Rcpp::stop(message);
        }
    }
};

// The run's motifs as the batch program takes them: by locus name, with an unnamed one for every
// other locus. A name the data lack, or a locus left without a motif, stops with its names.
void SetMotifs(const std::vector<std::string>& loci, Rcpp::IntegerVector motifs,
               RunSettings& settings) {
    const Rcpp::CharacterVector names = motifs.hasAttribute("names")
                                            ? Rcpp::CharacterVector(motifs.names())
                                            : Rcpp::CharacterVector(motifs.size(), "");
    std::map<std::string, Int16> byName;
    for (R_xlen_t i = 0; i < motifs.size(); ++i) {
        const std::string name(names[i]);
        const auto motif = static_cast<Int16>(motifs[i]);
        if (name.empty()) {
            settings.repeatForAll = motif;
        } else if (std::find(loci.begin(), loci.end(), name) == loci.end()) {
            std::string known;
            for (const std::string& locus : loci)
                known += (known.empty() ? "'" : ", '") + locus + "'";
            Rcpp::stop("motif: the data have no locus '" + name + "'. Their loci: " + known + ".");
        } else {
            byName[name] = motif;
        }
    }
    std::string without;
    for (const std::string& locus : loci) {
        if (const auto named = byName.find(locus); named != byName.end())
            settings.repeatByLocus[locus] = named->second;
        else if (settings.repeatForAll)
            settings.repeatByLocus[locus] = *settings.repeatForAll;
        else
            without += (without.empty() ? "'" : ", '") + locus + "'";
    }
    if (!without.empty())
        Rcpp::stop("motif: no repeat motif for " + without +
                   ". Give one number for every locus or name each locus.");
}

// The inbreeding verdict of each population, which the CSV table leaves out.
struct Verdicts {
    std::vector<int> number;
    std::vector<std::string> verdict;

    void Add(const PopulationResult& p) {
        number.push_back(p.number);
        verdict.push_back(p.likelihood ? p.likelihood->inbreeding.verdict : "");
    }
};

Rcpp::List HeatMapOf(const StudyTable& table) {
    const HeatMapDrawing drawing = LayOutHeatMap(table);
    std::vector<double> bx, by, bw, bh;
    std::vector<std::string> fill;
    std::vector<int> hatched;
    for (const HeatMapBox& box : drawing.boxes) {
        bx.push_back(box.x);
        by.push_back(box.y);
        bw.push_back(box.width);
        bh.push_back(box.height);
        fill.push_back(HexColour(box.fill));
        hatched.push_back(box.hatched);
    }
    std::vector<double> tx, ty, size;
    std::vector<std::string> text, anchor, colour;
    std::vector<int> vertical, bold;
    for (const HeatMapText& t : drawing.texts) {
        tx.push_back(t.x);
        ty.push_back(t.y);
        text.push_back(t.text);
        size.push_back(t.size);
        anchor.push_back(t.anchor == HeatMapText::Anchor::Start    ? "start"
                         : t.anchor == HeatMapText::Anchor::Middle ? "middle"
                                                                   : "end");
        vertical.push_back(t.vertical);
        bold.push_back(t.bold);
        colour.push_back(HexColour(t.colour));
    }
    using Rcpp::Named;
    return Rcpp::List::create(
        Named("width") = drawing.width, Named("height") = drawing.height,
        Named("boxes") = Rcpp::List::create(
            Named("x") = bx, Named("y") = by, Named("width") = bw, Named("height") = bh,
            Named("fill") = fill,
            Named("hatched") = Rcpp::LogicalVector(hatched.begin(), hatched.end())),
        Named("texts") = Rcpp::List::create(
            Named("x") = tx, Named("y") = ty, Named("text") = text, Named("size") = size,
            Named("anchor") = anchor,
            Named("vertical") = Rcpp::LogicalVector(vertical.begin(), vertical.end()),
            Named("bold") = Rcpp::LogicalVector(bold.begin(), bold.end()),
            Named("colour") = colour));
}

// The overview's totals by locus: in how many populations each locus ran and showed a null
// allele, stutter or large allele drop-out, as the heat map marks them.
Rcpp::List LocusTotalsOf(const StudyTable& table) {
    std::vector<int> analysed, nullAllele, stutter, dropout;
    for (const FlagTotals& totals : table.LocusTotals()) {
        analysed.push_back(totals.analysed);
        nullAllele.push_back(totals.nullAllele);
        stutter.push_back(totals.stutter);
        dropout.push_back(totals.dropout);
    }
    using Rcpp::Named;
    return Rcpp::List::create(Named("locus") = table.Loci(), Named("populations") = analysed,
                              Named("null_allele") = nullAllele, Named("stutter") = stutter,
                              Named("large_allele_dropout") = dropout);
}

// A line of progress, made on the study's thread and shown on R's.
struct Delivered {
    int number = 0;
    std::string name;
    bool analysed = false;
};

// What the study's thread hands to R's: the populations delivered so far, and the end.
class Handover {
public:
    void Deliver(Delivered line) {
        std::lock_guard lock(mutex_);
        lines_.push_back(std::move(line));
        changed_.notify_all();
    }
    void Finish(std::exception_ptr failure) {
        std::lock_guard lock(mutex_);
        finished_ = true;
        failure_ = failure;
        changed_.notify_all();
    }
    // Waits a little for news: the lines not yet taken, and whether the study has ended.
    bool Wait(std::vector<Delivered>& fresh) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, std::chrono::milliseconds(100),
                          [&] { return finished_ || lines_.size() > taken_; });
        fresh.assign(lines_.begin() + static_cast<std::ptrdiff_t>(taken_), lines_.end());
        taken_ = lines_.size();
        return finished_;
    }
    std::exception_ptr Failure() {
        std::lock_guard lock(mutex_);
        return failure_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Delivered> lines_;
    std::size_t taken_ = 0;
    bool finished_ = false;
    std::exception_ptr failure_;
};

// Cancels and waits for the study's thread whenever R's side leaves, an interrupt included.
struct JoinOnExit {
    std::thread& thread;
    std::atomic<bool>& cancel;
    ~JoinOnExit() {
        cancel = true;
        if (thread.joinable()) thread.join();
    }
};

}  // namespace

// [[Rcpp::export(.engine_formats)]]
Rcpp::CharacterVector EngineFormats() {
    Rcpp::CharacterVector formats;
    for (const auto& row : Readers())
        formats.push_back(row.first);
    return formats;
}

// [[Rcpp::export(.engine_read)]]
Rcpp::List EngineRead(std::string path, std::string format) {
    LoadedStore loaded(path, format);
    InputDataSource& store = *loaded.store;
    const std::vector<std::string> loci = store.LocusNames();
    std::vector<int> population;
    std::vector<std::string> names, samples;
    std::vector<std::vector<std::string>> alleles(2 * loci.size());
    for (const StudyPopulation& p : StudyPopulations(store)) {
        names.push_back(GridCaptionName(p.table));
        for (std::int64_t row = 2; row < p.table.RecordCount(); ++row) {
            population.push_back(p.number);
            samples.push_back(p.table.Cell(row, 1));
            for (std::size_t column = 0; column < alleles.size(); ++column)
                alleles[column].push_back(p.table.Cell(row, static_cast<int>(column) + 2));
        }
    }
    Rcpp::List columns;
    for (const std::vector<std::string>& column : alleles)
        columns.push_back(Rcpp::wrap(column));
    return Rcpp::List::create(Rcpp::Named("title") = store.TitleLine(), Rcpp::Named("loci") = loci,
                              Rcpp::Named("population") = population,
                              Rcpp::Named("population_names") = names,
                              Rcpp::Named("sample") = samples, Rcpp::Named("alleles") = columns);
}

// [[Rcpp::export(.engine_study)]]
Rcpp::List EngineStudy(std::string path, std::string format, std::string label,
                       Rcpp::CharacterVector populationNames, Rcpp::IntegerVector motifs, int seed,
                       int randomisations, int confidenceCode, int maxAlleleSize,
                       std::string onSuspect, int threads, int bootstrap, std::string tableFolder,
                       Rcpp::Function progress, int cancelAfter) {
    LoadedStore loaded(path, format);
    InputDataSource& store = *loaded.store;

    RunSettings settings;
    SetMotifs(store.LocusNames(), motifs, settings);
    std::vector<StudyPopulation> populations = StudyPopulations(store);
    // Each population has its own table now; the store's copy of the whole file is not needed.
    store.rsAllData = Table();
    store.rsAlleleData = Table();

    settings.seed = seed;
    settings.clockSeed = false;
    settings.randomisations = static_cast<Int16>(randomisations);
    settings.confidence = ConfidenceFromCode(confidenceCode).value_or(Confidence::Percent95);
    settings.maxAlleleSize = std::to_string(maxAlleleSize);
    settings.onSuspect = onSuspect == "stop"   ? SuspectPolicy::Stop
                         : onSuspect == "omit" ? SuspectPolicy::Omit
                                               : SuspectPolicy::Proceed;
    settings.tableFolder = tableFolder;
    settings.threads = threads;
    settings.bootstrap = bootstrap;

    StudyHeader header;
    header.file = label;
    // Of the file the study read: for a genind, of the Genepop text the package wrote for it.
    header.fileSha256 = Sha256OfFile(path).value_or("");
    header.title = store.TitleLine();
    header.settings = settings;

    const std::unique_ptr<ReportStream> csv = MakeCsvReport();
    const std::unique_ptr<ReportStream> html = MakeHtmlReport();
    std::string csvText = csv->Begin(header);
    std::string htmlText = html->Begin(header);
    Verdicts verdicts;
    StudyTable overview;
    const std::size_t total = populations.size();

    // Everything below until the join runs on the study's thread and touches no R object.
    std::atomic<bool> cancel{false};
    Handover handover;
    const std::vector<std::string> names = Rcpp::as<std::vector<std::string>>(populationNames);
    auto deliver = [&](PopulationResult&& p) {
        // Populations named by the caller (a data frame's) keep their names.
        if (static_cast<std::size_t>(p.number - 1) < names.size()) p.name = names[p.number - 1];
        csvText += csv->Population(p);
        htmlText += html->Population(p);
        verdicts.Add(p);
        overview.Add(p);
        handover.Deliver({p.number, p.name, p.Analysed()});
        if (cancelAfter >= 0 && verdicts.number.size() >= static_cast<std::size_t>(cancelAfter))
            cancel = true;
    };
    std::thread study([&] {
        std::exception_ptr failure;
        try {
            RunStudy(populations, settings, deliver, &cancel);
        } catch (...) {
            failure = std::current_exception();
        }
        handover.Finish(failure);
    });
    {
        JoinOnExit join{study, cancel};
        std::size_t done = 0;
        for (bool finished = false; !finished;) {
            std::vector<Delivered> fresh;
            finished = handover.Wait(fresh);
            for (const Delivered& line : fresh)
                progress(static_cast<int>(++done), static_cast<int>(total), line.number, line.name,
                         line.analysed);
            Rcpp::checkUserInterrupt();
        }
    }
    if (const std::exception_ptr failure = handover.Failure()) {
        try {
            std::rethrow_exception(failure);
        } catch (const std::exception& error) {
            Rcpp::stop(std::string("the study stopped: ") + error.what());
        }
    }
    csvText += csv->End();
    htmlText += html->End();
    return Rcpp::List::create(
        Rcpp::Named("csv") = csvText, Rcpp::Named("html") = htmlText,
        Rcpp::Named("verdicts") = Rcpp::List::create(Rcpp::Named("population") = verdicts.number,
                                                     Rcpp::Named("verdict") = verdicts.verdict),
        Rcpp::Named("heat_map") = HeatMapOf(overview),
        Rcpp::Named("locus_totals") = LocusTotalsOf(overview),
        Rcpp::Named("complete") = verdicts.number.size() == total);
}
