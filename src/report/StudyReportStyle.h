#pragma once

namespace tavrelle {

// The study report's style on screen and in print. The printed text is 180 mm wide: A4 paper
// (210 mm) with 15 mm margins, which fits Letter (216 mm) as well; the wide tables are cut into
// groups of loci that fit that width.
extern const char* const kStudyReportStyle;

}  // namespace tavrelle
