#include "report/StudyReport.h"

#include <cstdio>

#include "results/GraphModel.h"
#include "results/GraphSvg.h"
#include "results/LocusGraphs.h"
#include "run/EstimateColour.h"
#include "run/StudyHeatMap.h"
#include "run/StudyTable.h"

namespace tavrelle {

namespace {

const char* const kStyle = R"(<style>
body { font-family: sans-serif; margin: 2em auto; max-width: 1100px; color: #222; }
h1 { font-size: 1.6em; } h2 { margin-top: 2em; border-bottom: 2px solid #999; }
h3 { margin-bottom: 0.3em; }
table { border-collapse: collapse; margin: 0.5em 0; }
th, td { border: 1px solid #ccc; padding: 2px 6px; font-size: 0.85em; }
th { background: #f0f0f0; text-align: left; }
div.wide { overflow-x: auto; }
table.overview th, table.overview td { font-size: 0.75em; }
td.cell { text-align: center; white-space: nowrap; } td.cell a { text-decoration: none; }
td.yes { font-weight: bold; }
td.stopped { background: #ddd; font-style: italic; }
td.total { background: #f7f7f7; text-align: center; }
pre { background: #f7f7f7; padding: 0.5em; font-size: 0.85em; white-space: pre-wrap;
      tab-size: 8; }
figure { display: inline-block; margin: 0.3em; } figcaption { font-size: 0.8em; color: #444;
      max-width: 520px; }
section.locus { break-inside: avoid; page-break-inside: avoid; }
.note { color: #555; font-size: 0.9em; }
div.report { display: flex; flex-direction: column; }
div.summary { order: 1; } div.populations { order: 2; }
</style>
)";

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

std::string Fixed(double value, int decimals) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string Anchor(int population, std::size_t locus) {
    return "p" + std::to_string(population) + "-l" + std::to_string(locus);
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
    row("File", input.file);
    row("Title", input.title);
    row("Populations",
        std::to_string(delivered) +
            (delivered < populationsInFile
                 ? " of " + std::to_string(populationsInFile) + " (the run was cancelled)"
                 : ""));
    row("Randomisations", std::to_string(s.randomisations));
    row("Confidence interval", GraphModel::ConfidenceLabel(s.confidence));
    row("Repeat units", motifs.empty() ? "none chosen" : motifs);
    row("Suspect values", suspects);
    row("Seed", std::to_string(s.seed) + (input.clockSeed ? " (from the clock)" : " (set)"));
    row("Estimate shown in the overview", kStudyEstimateName);
    return html + "</table>\n";
}

std::string OverviewTable(const StudyTable& table) {
    std::string html = "<table class=\"overview\"><tr><th>Population</th>";
    for (const std::string& locus : table.Loci())
        html += "<th>" + Html(locus) + "</th>";
    html += "<th>Null</th><th>Stutter</th><th>Drop-out</th></tr>\n";
    for (const StudyRow& row : table.Rows()) {
        html += "<tr><th>" + std::to_string(row.number) + " " + Html(row.name) + "</th>";
        if (row.stopReason) {
            html += "<td class=\"stopped\" colspan=\"" + std::to_string(table.Loci().size() + 3) +
                    "\">stopped: " + Html(*row.stopReason) + "</td></tr>\n";
            continue;
        }
        for (std::size_t c = 0; c < row.cells.size(); ++c) {
            if (!row.cells[c]) {
                html += "<td></td>";
                continue;
            }
            const StudyCell& cell = *row.cells[c];
            const Rgb fill = EstimateColour(cell.estimate);
            std::string marks;
            if (cell.flags.stutter) marks += " S";
            if (cell.flags.dropout) marks += " D";
            html += "<td class=\"cell" + std::string(cell.verdict == "yes" ? " yes" : "") +
                    "\" style=\"background:" + HexColour(fill) +
                    ";color:" + HexColour(TextColourOn(fill)) + "\"><a style=\"color:inherit\" " +
                    "href=\"#" + Anchor(row.number, c) + "\">" + Html(cell.verdict) + " " +
                    Fixed(cell.estimate, 3) + marks + "</a></td>";
        }
        const FlagTotals& t = row.totals;
        for (int n : {t.nullAllele, t.stutter, t.dropout})
            html += "<td class=\"total\">" + std::to_string(n) + "/" + std::to_string(t.analysed) +
                    "</td>";
        html += "</tr>\n";
    }
    const char* const names[] = {"Null (populations)", "Stutter (populations)",
                                 "Drop-out (populations)"};
    for (int k = 0; k < 3; ++k) {
        html += "<tr><th>" + std::string(names[k]) + "</th>";
        for (const FlagTotals& t : table.LocusTotals()) {
            const int n = k == 0 ? t.nullAllele : k == 1 ? t.stutter : t.dropout;
            html += "<td class=\"total\">" + std::to_string(n) + "/" + std::to_string(t.analysed) +
                    "</td>";
        }
        html += "<td colspan=\"3\"></td></tr>\n";
    }
    return html + "</table>\n";
}

std::string LocusSection(const PopulationResult& population, const LocusResult& locus,
                         std::size_t column, Confidence confidence) {
    std::string html = "<section class=\"locus\" id=\"" + Anchor(population.number, column) +
                       "\"><h3>" + Html(population.name) + ", locus " + Html(locus.name) +
                       "</h3>\n";
    const std::string caption =
        " The count axis starts at zero so that every class is visible; the program's graph "
        "windows scale their axis to the data.";
    for (bool first : {true, false}) {
        GraphModel graph =
            LocusGraph(first ? GraphModel::Kind::Homozygotes : GraphModel::Kind::Differences,
                       population.name, locus);
        graph.SetConfidence(confidence);
        html += "<figure>" + GraphSvg(graph) + "<figcaption>" +
                (first ? "Homozygotes by allele size, observed against "
                       : "Pairs of alleles by size difference (bp), observed against ") +
                std::to_string(locus.randomHomozygotes.Rounds()) + " randomisations." + caption +
                "</figcaption></figure>\n";
    }
    html += "<pre>" + PlainText(locus.probabilityText) + "</pre>\n";
    html += "<pre>" + PlainText(locus.interpretationText) + "</pre>\n";
    html += "<table class=\"estimates\"><tr><th>Null allele frequency</th>";
    for (const char* name : kNullMethodNames)
        html += "<th>" + Html(name) + "</th>";
    html += "</tr><tr><td>estimate</td>";
    for (double estimate : locus.nulls.estimates)
        html += "<td>" + Fixed(estimate, 4) + "</td>";
    return html + "</tr></table></section>\n";
}

}  // namespace

std::string StudyReportBuilder::Begin() const {
    const std::string heading = Html(header_.title.empty() ? header_.file : header_.title);
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
           "<title>Study report: " +
           heading + "</title>\n" + kStyle + "</head><body>\n<h1>Study report: " + heading +
           "</h1>\n<div class=\"report\">\n<div class=\"populations\">\n";
}

std::string StudyReportBuilder::Add(const PopulationResult& population) {
    table_.Add(population);
    ++added_;
    std::string sections = "<h2>Population " + std::to_string(population.number) + ": " +
                           Html(population.name) + "</h2>\n<p>" +
                           std::to_string(population.samples) + " samples.</p>\n";
    if (!population.Analysed() || !population.analysis)
        return sections + "<p>Not analysed: " + PlainText(population.error.value_or("")) + "</p>\n";
    for (const LocusResult& locus : population.analysis->Loci()) {
        std::size_t column = 0;
        while (column < table_.Loci().size() && table_.Loci()[column] != locus.name)
            ++column;
        sections += LocusSection(population, locus, column, header_.settings.confidence);
    }
    return sections;
}

std::string StudyReportBuilder::End(int populationsInFile) const {
    std::string html = "</div>\n<div class=\"summary\">\n<h2>Settings</h2>\n" +
                       SettingsSection(header_, added_, populationsInFile);

    html += "<h2>Overview</h2>\n<p class=\"note\">Each cell: the null allele verdict, the " +
            std::string(kStudyEstimateName) +
            " estimate of the null allele frequency (colour), S for stutter and D for large "
            "allele drop-out. The totals count the loci of a population, and the populations "
            "of a locus, where each fires. A cell links to its graphs.</p>\n" +
            "<div class=\"wide\">" + OverviewTable(table_) + "</div>\n";
    html += "<h2>Heat map</h2>\n" + HeatMapSvg(LayOutHeatMap(table_));

    std::string notes;
    for (const StudyRow& row : table_.Rows()) {
        if (row.stopReason)
            notes += "<li>" + Html(row.name) + ": stopped: " + Html(*row.stopReason) + "</li>\n";
        const std::string suspects = SuspectSummary(row, 20);
        if (!suspects.empty()) notes += "<li>" + Html(row.name + ": " + suspects) + "</li>\n";
    }
    if (!notes.empty())
        html += "<h2>Stopped populations and suspect values</h2>\n<ul>" + notes + "</ul>\n";
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
