#include "report/StudyReportStyle.h"

namespace tavrelle {

const char* const kStudyReportStyle = R"(body { font-family: sans-serif; margin: 2em auto;
  max-width: 1100px; padding: 0 1em; color: #222; }
h1 { font-size: 1.6em; } h2 { margin-top: 2em; border-bottom: 2px solid #999; }
h3 { margin-bottom: 0.3em; }
table { border-collapse: collapse; margin: 0.5em 0; max-width: 100%; }
th, td { border: 1px solid #ccc; padding: 2px 5px; font-size: 0.85em; }
th { background: #f0f0f0; text-align: left; }
td.n, table.estimates td { text-align: right; white-space: nowrap; }
table.estimates td { font-size: 0.7em; color: #555; }
table.estimates td::first-line { font-size: 1.2em; color: #222; }
table.overview th, table.overview td { font-size: 0.72em; }
tr.chosen td { font-weight: bold; }
td.c { text-align: center; white-space: nowrap; } td.c a { color: inherit; text-decoration: none; }
td.dark { color: #fff; } td.y { font-weight: bold; }
td.stopped { background: #ddd; font-style: italic; }
td.total { background: #f7f7f7; text-align: center; }
.mark { font-weight: bold; color: #a40; }
pre { background: #f7f7f7; padding: 0.5em; font-size: 0.8em; white-space: pre-wrap; tab-size: 8;
  overflow-wrap: anywhere; }
div.more { display: grid; grid-template-columns: 1fr 1fr; gap: 0.3em 1em; align-items: start; }
div.more > * { min-width: 0; } svg.graph { width: 100%; height: auto; }
svg.legend { width: 420px; max-width: 100%; height: auto; }
div.heatmap svg { max-width: 100%; height: auto; }
.note { color: #555; font-size: 0.9em; }
dl.formulas dt { font-weight: bold; margin-top: 0.4em; } dl.formulas dd { margin-left: 1.5em; }
td.hash { font-family: monospace; overflow-wrap: anywhere; }
summary { cursor: pointer; font-weight: bold; margin: 0.4em 0; }
div.report { display: flex; flex-direction: column; }
div.head { order: 0; } div.summary { order: 1; } div.methods { order: 2; }
div.populations { order: 3; } div.closing { order: 4; }
@page { margin: 15mm; }
@media print {
  body { max-width: none; margin: 0; padding: 0; font-size: 9pt; }
  h2 { margin-top: 1em; }
  * { overflow: visible !important; }
  section.population, div.closing { break-before: page; }
  h2, h3, summary { break-after: avoid; }
  tr, svg.graph, pre, dl.formulas dd { break-inside: avoid; }
  thead { display: table-header-group; }
  details::details-content { content-visibility: visible; display: contents; }
  summary { list-style: none; } summary::-webkit-details-marker { display: none; }
  pre { font-size: 7pt; padding: 0.3em; margin: 0; }
  a { color: inherit; text-decoration: none; }
  /* A tall heat map shrinks to one page of either paper: a drawing cannot break. */
  div.heatmap svg { width: auto; max-height: 235mm; }
}
)";

}  // namespace tavrelle
