#pragma once

#include <array>
#include <string>
#include <vector>

#include "base/Int16.h"

namespace tavrelle {

// The questionnaire's codes for the three questions about the study.
enum StudyAnswer : Int16 {
    kStudyNo = 0,
    kStudyYes = 1,
    kStudyDontKnow = 2,
    kStudyNotSupplied = 3,  // the questionnaire was cancelled
};

// The laboratory advice of the results screen. From the user's answers about the study it builds
// the statements shown beside the evidence, and from the evidence of a locus the recommendations.
// Texts come in the rows of the screen: 0 homozygote excess, 1 null alleles, 2 large allele
// dropout, 3 stuttering; row 0 carries no statement and no advice.
class AnalysisAdvice {
public:
    using Texts = std::array<std::string, 4>;

    // The statements for the answers (0 ancient DNA, 1 primers developed for other species,
    // 2 samples stored in ethanol or cold); an answer that was never given counts as not
    // supplied. A "yes" sets its flag, and a flag once set stays for the life of the advice.
    Texts UserStatements(const std::vector<Int16>& answers);

    // The recommendations for the evidence of a locus, qualified by the flags. The fourth
    // argument replaces the stuttering advice by its plain form.
    Texts Recommendations(bool nulls, bool dropout, bool stutter, bool fourth) const;

    bool ancientUsed = false;
    bool primersUsed = false;
    bool degradedUsed = false;
};

}  // namespace tavrelle
