#include "report/StudyReport.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "base/Version.h"
#include "report/ColumnGroups.h"
#include "report/ReportMethods.h"
#include "report/StudyReportStyle.h"
#include "results/GraphModel.h"
#include "results/GraphSvg.h"
#include "results/LocusGraphs.h"
#include "run/EstimateColour.h"
#include "run/StudyGridLayout.h"
#include "run/StudyHeatMap.h"
#include "run/StudyTable.h"

namespace tavrelle {

namespace {

// Loci per printed group of the overview (its three totals count as loci) and of the heat map's
// caption: about 20 mm a column within the 180 mm of text.
constexpr std::size_t kOverviewColumnsPerGroup = 9;

std::string Html(const std::string& text) {
    return EscapeXml(text);
}

// The engine's texts break lines with CR LF.
std::string PlainText(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            if (i + 1 < text.size() && text[i + 1] == '\n') continue;
            plain += '\n';
        } else {
            plain += text[i];
        }
    }
    return Html(plain);
}

// A number with `decimals` places, a true minus sign, and an en dash where there is none.
std::string Fixed(double value, int decimals) {
    if (!std::isfinite(value)) return "&ndash;";
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    std::string shown = text;
    if (shown.starts_with('-')) shown = "\u2212" + shown.substr(1);
    return shown;
}

std::string IntervalText(const Interval& interval, int decimals) {
    if (!std::isfinite(interval.low) || !std::isfinite(interval.high)) return "";
    return "[" + Fixed(interval.low, decimals) + ", " + Fixed(interval.high, decimals) + "]";
}

// A table cell with a number and, on a second line the style makes small, its interval. The end
// tags of cells are left out, as HTML allows, for a page of thousands of them.
std::string EstimateCell(double value, const Interval& interval) {
    const std::string range = IntervalText(interval, 3);
    return "<td>" + Fixed(value, 3) + (range.empty() ? "" : "<br>" + range);
}

std::string Anchor(int population, std::size_t locus) {
    return "p" + std::to_string(population) + "-l" + std::to_string(locus);
}

// Now, or SOURCE_DATE_EPOCH where a reproducible build or test sets it, as UTC.
std::string ReportTime() {
    using namespace std::chrono;
    sys_seconds now = floor<seconds>(system_clock::now());
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH"); epoch != nullptr && *epoch != '\0') {
        char* end = nullptr;
        const long long seconds = std::strtoll(epoch, &end, 10);
        if (end != nullptr && *end == '\0') now = sys_seconds(std::chrono::seconds(seconds));
    }
    const auto day = floor<days>(now);
    const year_month_day date(day);
    const hh_mm_ss time(now - day);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02lld:%02lld:%02lld UTC",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<long long>(time.hours().count()),
                  static_cast<long long>(time.minutes().count()),
                  static_cast<long long>(time.seconds().count()));
    return text;
}

// A row a line: the time and the command differ from run to run and front end to front end, and
// a comparison of two reports leaves out those two lines.
std::string HeadSection(const StudyReportHeader& input) {
    std::string html = "<table class=\"program\">\n";
    auto row = [&](const std::string& name, const std::string& value, const char* cls = nullptr) {
        html += "<tr><th>" + name + "</th><td" +
                (cls ? " class=\"" + std::string(cls) + "\"" : std::string()) + ">" + value +
                "</td></tr>\n";
    };
    row("Program", std::string("Tavrelle ") + kProgramVersion);
    row("Report made", Html(input.created));
    row("Input file", Html(input.file));
    row("SHA-256 of the file", input.fileSha256.empty() ? "not known" : Html(input.fileSha256),
        "hash");
    row("Title", Html(input.title));
    if (!input.command.empty()) row("Command", "<code>" + Html(input.command) + "</code>");
    return html + "</table>\n";
}

std::string SettingsSection(const StudyReportHeader& input, int delivered, int populationsInFile) {
    const RunSettings& s = input.settings;
    std::string motifs;
    if (s.repeatForAll) motifs = "every locus: " + std::to_string(*s.repeatForAll) + " bp";
    for (const auto& [locus, code] : s.repeatByLocus)
        motifs += (motifs.empty() ? "" : ", ") + locus + ": " + std::to_string(code) + " bp";
    const char* suspects = s.onSuspect == SuspectPolicy::Proceed ? "analysed as they stand"
                           : s.onSuspect == SuspectPolicy::Omit  ? "omitted"
                                                                 : "population not analysed";
    std::string html = "<table class=\"settings\">";
    auto row = [&](const std::string& name, const std::string& value) {
        html += "<tr><th>" + Html(name) + "</th><td>" + Html(value) + "</td></tr>";
    };
    row("Populations", std::to_string(delivered) +
                           (delivered < populationsInFile
                                ? " of " + std::to_string(populationsInFile) +
                                      " (run cancelled after " + std::to_string(delivered) +
                                      " of " + std::to_string(populationsInFile) + " populations)"
                                : ""));
    row("Randomisations", std::to_string(s.randomisations));
    row("Confidence interval", GraphModel::ConfidenceLabel(s.confidence));
    row("Maximum allele size", s.maxAlleleSize);
    row("Repeat units", motifs.empty() ? "none chosen" : motifs);
    row("Suspect values", suspects);
    row("Seed", std::to_string(s.seed) + (input.clockSeed ? " (from the clock)" : " (set)"));
    row("Bootstrap replicates", s.bootstrap > 0 ? std::to_string(s.bootstrap) : "none");
    row("Estimate shown in the overview", StudyEstimateName(s.overviewEstimate));
    return html + "</table>\n";
}

// What the overview's cells and totals say; one place, so that a change of wording is one edit.
std::string OverviewLegend(const StudyTable& table) {
    std::string html = "<p class=\"note\">Each cell: the null allele verdict, the " +
                       Html(StudyEstimateName(table.Estimate())) +
                       " estimate of the null allele frequency (colour), S for stutter and D for "
                       "large allele drop-out. The totals count the loci of a population, and the "
                       "populations of a locus, where each fires. A cell links to its "
                       "population's details. The loci are shown in groups that fit the printed "
                       "page.</p>\n";
    const std::string marks = StudyMarksLegend(table);
    std::size_t begin = 0;
    for (std::size_t end = marks.find('\n'); end != std::string::npos;
         begin = end + 1, end = marks.find('\n', begin))
        html += "<p class=\"note\">" + Html(marks.substr(begin, end - begin)) + "</p>\n";
    const std::string cancelled = CancelledText(table);
    if (!cancelled.empty()) html += "<p class=\"mark\">" + Html(cancelled) + "</p>\n";
    return html;
}

std::string OverviewCell(const std::optional<StudyCell>& cell, const std::string& anchor) {
    if (!cell) return "<td></td>";
    const Rgb fill = EstimateColour(cell->estimate);
    std::string marks;
    if (cell->flags.stutter) marks += " S";
    if (cell->flags.dropout) marks += " D";
    std::string title;
    if (cell->AnyBorderline()) {
        marks += std::string(" ") + kBorderlineMark;
        title = "a borderline verdict";
    }
    if (cell->ManyBlanks()) {
        marks += std::string(" ") + kManyBlanksMark;
        title += (title.empty() ? "" : "; ") + std::to_string(cell->blanks) + " of " +
                 std::to_string(cell->samples) + " samples blank";
    }
    const bool dark = HexColour(TextColourOn(fill)) == "#ffffff";
    return "<td class=\"c" + std::string(cell->verdict == "yes" ? " y" : "") +
           (dark ? " dark" : "") + "\" style=\"background:" + HexColour(fill) + "\"" +
           (title.empty() ? "" : " title=\"" + Html(title) + "\"") + "><a href=\"#" + anchor +
           "\">" + Html(cell->verdict) + " " + Fixed(cell->estimate, 3) + marks + "</a></td>";
}

std::string TotalCell(int fired, int analysed) {
    return "<td class=\"total\">" + std::to_string(fired) + "/" + std::to_string(analysed) +
           "</td>";
}

// One group of the overview's loci, [first, last); the group that ends the loci also holds the
// populations' totals.
std::string OverviewGroup(const StudyTable& table, std::size_t first, std::size_t last) {
    const bool totals = last == table.Loci().size();
    std::string html = "<table class=\"overview\"><thead><tr><th>Population</th>";
    for (std::size_t c = first; c < last; ++c)
        html += "<th>" + Html(table.Loci()[c]) + "</th>";
    if (totals) html += "<th>Null</th><th>Stutter</th><th>Drop-out</th>";
    html += "</tr></thead>\n";
    const std::size_t span = last - first + (totals ? 3 : 0);
    for (const StudyRow& row : table.Rows()) {
        html += "<tr><th>" + std::to_string(row.number) + " " + Html(row.name) + "</th>";
        if (row.stopReason) {
            html += "<td class=\"stopped\" colspan=\"" + std::to_string(span) +
                    "\">stopped: " + Html(*row.stopReason) + "</td></tr>\n";
            continue;
        }
        for (std::size_t c = first; c < last && c < row.cells.size(); ++c)
            html += OverviewCell(row.cells[c], Anchor(row.number, c));
        for (std::size_t c = std::max(first, row.cells.size()); c < last; ++c)
            html += "<td></td>";
        if (totals) {
            const FlagTotals& t = row.totals;
            for (int n : {t.nullAllele, t.stutter, t.dropout})
                html += TotalCell(n, t.analysed);
        }
        html += "</tr>\n";
    }
    const char* const names[] = {"Null (populations)", "Stutter (populations)",
                                 "Drop-out (populations)"};
    for (int k = 0; k < 3; ++k) {
        html += "<tr><th>" + std::string(names[k]) + "</th>";
        for (std::size_t c = first; c < last; ++c) {
            const FlagTotals& t = table.LocusTotals()[c];
            html += TotalCell(k == 0 ? t.nullAllele : k == 1 ? t.stutter : t.dropout, t.analysed);
        }
        if (totals) html += "<td colspan=\"3\"></td>";
        html += "</tr>\n";
    }
    return html + "</table>\n";
}

std::string OverviewTables(const StudyTable& table) {
    const std::size_t loci = table.Loci().size();
    std::string html;
    // The totals take three columns of the last group.
    for (auto [first, last] : ColumnGroups(loci + 3, kOverviewColumnsPerGroup)) {
        if (first >= loci) break;
        html += OverviewGroup(table, first, std::min(last, loci));
    }
    return html;
}

// A verdict with the share of rounds that decides it, always or only where it is borderline.
std::string VerdictCell(const std::string& verdict, const VerdictFraction& fraction,
                        bool alwaysShare) {
    std::string html = "<td>" + Html(verdict);
    if (std::isfinite(fraction.test.fraction) && (alwaysShare || fraction.borderline))
        html += "<br>" + Fixed(fraction.test.fraction, 3) + " \u00b1 " +
                Fixed(fraction.test.standardError, 3) +
                (fraction.borderline ? " <b class=\"mark\">borderline</b>" : "");
    return html;
}

std::string YesNo(bool value) {
    return value ? "yes" : "no";
}

// The verdicts and the closed-form estimates, one row a locus.
std::string VerdictTable(const PopulationResult& population) {
    std::string html =
        "<table class=\"estimates\"><thead><tr><th>Locus</th><th>Null allele</th>"
        "<th>Stutter</th><th>Drop-out</th>";
    for (std::size_t m = 0; m < 4; ++m)
        html += "<th>" + Html(kEstimateLabels[m]) + "</th>";
    html += "</tr></thead>\n";
    const PopulationEstimates* likelihood =
        population.likelihood ? &*population.likelihood : nullptr;
    for (const LocusResult& locus : population.analysis->Loci()) {
        const LocusFlags flags = FlagsOf(locus);
        const VerdictFractions& f = locus.verdictFractions;
        html += "<tr><th>" + Html(locus.name) + "</th>" +
                VerdictCell(locus.nullPresent, f.nullAllele, true) +
                VerdictCell(YesNo(flags.stutter), f.stutter, false) +
                VerdictCell(YesNo(flags.dropout), f.dropout, false);
        const auto index = static_cast<std::size_t>(locus.index);
        for (std::size_t m = 0; m < 4; ++m) {
            const Interval none{kNoValue, kNoValue};
            const bool known = likelihood && index < likelihood->loci.size();
            html += EstimateCell(locus.nulls.estimates[m],
                                 known ? likelihood->loci[index].intervals[m] : none);
        }
        html += "</tr>\n";
    }
    return html + "</table>\n";
}

// The likelihood estimates and the failure rates, one row a locus.
std::string LikelihoodTable(const PopulationEstimates& likelihood) {
    std::string html = "<table class=\"estimates\"><thead><tr><th>Locus</th>";
    for (std::size_t m = kEm; m < kEstimateCount; ++m)
        html += "<th>" + Html(kEstimateLabels[m]) + "</th>";
    html += "<th>Failure rate &beta;</th></tr></thead>\n";
    for (const LocusEstimates& locus : likelihood.loci) {
        html += "<tr><th>" + Html(locus.name) + "</th>";
        for (std::size_t m = kEm; m < kEstimateCount; ++m)
            html += EstimateCell(locus.estimates[m], locus.intervals[m]);
        html += EstimateCell(locus.failureRate, locus.failureInterval) + "</tr>\n";
    }
    return html + "</table>\n";
}

std::string InbreedingSection(const PopulationEstimates& likelihood) {
    const InbreedingResult& f = likelihood.inbreeding;
    std::string html =
        "<table class=\"inbreeding\"><thead><tr><th>F</th><th>Interval</th>"
        "<th>Model chosen</th></tr></thead><tr><td class=\"n\">" +
        Fixed(f.f, 3) + "</td><td class=\"n\">" + IntervalText(f.interval, 3) + "</td><td>" +
        kNestedModelNames[static_cast<std::size_t>(f.model)] + "</td></tr></table>\n";
    // One row a model, so that the choice by AIC can be followed; a model without null alleles
    // or failures cannot give a blank: log L is minus infinity there.
    html +=
        "<table class=\"models\"><thead><tr><th>Model</th><th>Parameters</th><th>log L</th>"
        "<th>AIC</th></tr></thead>\n";
    for (std::size_t m = 0; m < kNestedModelCount; ++m) {
        const double logL = f.logLikelihoods[m];
        const bool impossible = std::isinf(logL) && logL < 0;
        const bool chosen = m == static_cast<std::size_t>(f.model);
        html += std::string(chosen ? "<tr class=\"chosen\">" : "<tr>") + "<td>" +
                kNestedModelNames[m] + (chosen ? " (chosen)" : "") + "</td><td class=\"n\">" +
                std::to_string(f.parameters[m]) + "</td><td class=\"n\">" +
                (impossible ? "\u2212\u221e" : Fixed(logL, 2)) + "</td><td class=\"n\">" +
                (impossible ? "\u221e" : Fixed(2.0 * f.parameters[m] - 2 * logL, 2)) +
                "</td></tr>\n";
    }
    return html + "</table>\n<p>" + Html(f.verdict) + "</p>\n";
}

std::string LocusDetails(const PopulationResult& population, const LocusResult& locus,
                         std::size_t column, Confidence confidence) {
    std::string html = "<details id=\"" + Anchor(population.number, column) + "\"><summary>Locus " +
                       Html(locus.name) + "</summary><div class=\"more\">\n";
    for (bool first : {true, false}) {
        GraphModel graph =
            LocusGraph(first ? GraphModel::Kind::Homozygotes : GraphModel::Kind::Differences,
                       population.name, locus);
        graph.SetConfidence(confidence);
        html += GraphSvg(graph);
    }
    html += "\n<pre>" + PlainText(locus.probabilityText) + "</pre>\n";
    return html + "<pre>" + PlainText(locus.interpretationText) + "</pre></div></details>\n";
}

// What the populations' tables and graphs show, said once for them all.
std::string PopulationsLegend() {
    return "<h2>Populations</h2>\n<p class=\"note\">Each locus's graphs hold the observed counts "
           "against the randomisations. The count axis starts at zero so that every class is "
           "visible; the program's graph windows scale their axis to the data.</p>\n" +
           GraphLegendSvg() +
           "\n<p class=\"note\">Estimates are given with their 95% bootstrap interval beneath. "
           "A negative closed-form estimate means fewer homozygotes than expected: read it as "
           "no null allele. Under the null allele verdict, and under any borderline verdict: the "
           "share of rounds at or beyond the observed count &plusmn; its Monte Carlo standard "
           "error.</p>\n";
}

}  // namespace

StudyReportBuilder::StudyReportBuilder(StudyReportHeader header)
    : header_(std::move(header)), table_(header_.settings.overviewEstimate) {
    if (header_.created.empty()) header_.created = ReportTime();
}

std::string StudyReportBuilder::Begin() const {
    const std::string heading = Html(header_.title.empty() ? header_.file : header_.title);
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<title>Study report: " +
           heading + "</title>\n<style>\n" + kStudyReportStyle + kGraphSvgStyle +
           "</style>\n</head><body>\n" + GraphDefsSvg(header_.settings.confidence) +
           "\n<div class=\"report\">\n<div class=\"head\">\n"
           "<h1>Study report: " +
           heading + "</h1>\n" + HeadSection(header_) + "</div>\n<div class=\"methods\">\n" +
           MethodsHtml(header_.settings) + "</div>\n<div class=\"populations\">\n" +
           PopulationsLegend();
}

std::string StudyReportBuilder::Add(const PopulationResult& population) {
    table_.Add(population);
    ++added_;
    std::string sections = "<section class=\"population\"><h2>Population " +
                           std::to_string(population.number) + ": " + Html(population.name) +
                           "</h2>\n<p>" + std::to_string(population.samples) + " samples.</p>\n";
    if (!population.Analysed() || !population.analysis)
        return sections + "<p>Not analysed: " + PlainText(population.error.value_or("")) +
               "</p></section>\n";
    sections += "<h3>Verdicts and closed-form estimates</h3>\n" + VerdictTable(population);
    if (population.likelihood) {
        sections += "<h3>Likelihood estimates and failure rates</h3>\n" +
                    LikelihoodTable(*population.likelihood) +
                    "<h3>Inbreeding and model choice</h3>\n" +
                    InbreedingSection(*population.likelihood);
    }
    sections += "<h3>Loci in detail</h3>\n";
    for (const LocusResult& locus : population.analysis->Loci()) {
        std::size_t column = 0;
        while (column < table_.Loci().size() && table_.Loci()[column] != locus.name)
            ++column;
        sections += LocusDetails(population, locus, column, header_.settings.confidence);
    }
    return sections + "</section>\n";
}

std::string StudyReportBuilder::End(int populationsInFile) {
    table_.SetRun(header_.settings.seed, populationsInFile);
    std::string html = "</div>\n<div class=\"summary\">\n<h2>Settings</h2>\n" +
                       SettingsSection(header_, added_, populationsInFile);

    html += "<h2>Overview</h2>\n" + OverviewLegend(table_) + OverviewTables(table_);
    html += "<h2>Heat map</h2>\n<div class=\"heatmap\">" + HeatMapSvg(LayOutHeatMap(table_)) +
            "</div>\n";

    std::string notes;
    for (const StudyRow& row : table_.Rows()) {
        if (row.stopReason)
            notes += "<li>" + Html(row.name) + ": stopped: " + Html(*row.stopReason) + "</li>\n";
        const std::string suspects = SuspectSummary(row, 20);
        if (!suspects.empty()) notes += "<li>" + Html(row.name + ": " + suspects) + "</li>\n";
    }
    if (!notes.empty())
        html += "<h2>Stopped populations and suspect values</h2>\n<ul>" + notes + "</ul>\n";
    html += "</div>\n<div class=\"closing\">\n" + ReferencesHtml() + CitationHtml();
    return html + "</div>\n</div>\n</body></html>\n";
}

std::string StudyReportHtml(const StudyReportInput& input) {
    StudyReportBuilder builder(input);
    std::string html = builder.Begin();
    for (const PopulationResult& population : *input.populations)
        html += builder.Add(population);
    return html + builder.End(input.populationsInFile);
}

}  // namespace tavrelle
