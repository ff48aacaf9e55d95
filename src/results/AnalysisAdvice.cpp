#include "results/AnalysisAdvice.h"

namespace tavrelle {

namespace {

constexpr const char* kBreak = "\r\n";

Int16 AnswerAt(const std::vector<Int16>& answers, std::size_t index) {
    return index < answers.size() ? answers[index] : Int16{kStudyNotSupplied};
}

}  // namespace

AnalysisAdvice::Texts AnalysisAdvice::UserStatements(const std::vector<Int16>& answers) {
    std::string ancient, primers, stored;
    switch (AnswerAt(answers, 0)) {
        case kStudyNo:
            ancient = "Ancient DNA was not used.";
            break;
        case kStudyYes:
            ancient = "Ancient DNA was used.";
            ancientUsed = true;
            break;
        case kStudyDontKnow:
            ancient = "It is not known if ancient DNA was used";
            break;
        case kStudyNotSupplied:
            ancient = "No user information supplied.";
            break;
        default:
            break;
    }
    switch (AnswerAt(answers, 1)) {
        case kStudyNo:
            primers = "Primers developed for other species were not used.";
            break;
        case kStudyYes:
            primers = "Primers developed for other species were used.";
            primersUsed = true;
            break;
        case kStudyDontKnow:
            primers = "It is not known if primers developed for other species were used.";
            break;
        default:
            break;
    }
    switch (AnswerAt(answers, 2)) {
        case kStudyNo:
            stored =
                "Samples stored in ethanol or cold storage that may have degraded were not used.";
            break;
        case kStudyYes:
            stored = "Samples stored in ethanol or cold storage that may have degraded were used.";
            degradedUsed = true;
            break;
        case kStudyDontKnow:
            stored =
                "It is not known if samples stored in ethanol or cold storage that may have "
                "degraded were used.";
            break;
        default:
            break;
    }

    std::string nullRisk, dropoutRisk, stutterRisk;
    if (ancientUsed || primersUsed || degradedUsed)
        nullRisk = "These conditions may increase the liklihood of null alleles.";
    // Primers for other species fail to amplify; they do not make alleles drop out or stutter.
    if (ancientUsed || degradedUsed) {
        dropoutRisk = "These conditions may increase the liklihood of large allele dropout.";
        stutterRisk = "These conditions may increase the liklihood of stuttering.";
    }
    return {"", ancient + kBreak + primers + kBreak + stored + kBreak + nullRisk,
            ancient + kBreak + stored + kBreak + dropoutRisk,
            ancient + kBreak + stored + kBreak + stutterRisk};
}

AnalysisAdvice::Texts AnalysisAdvice::Recommendations(bool nulls, bool dropout, bool stutter,
                                                      bool fourth) const {
    std::string nullAdvice, stutterAdvice, dropoutAdvice;
    if (ancientUsed) {
        nullAdvice = std::string("Ancient DNA is more prone to null alleles") + kBreak;
        stutterAdvice = std::string("Ancient DNA is more prone to stuttering") + kBreak;
        dropoutAdvice = std::string("Ancient DNA is more prone to large allele dropout") + kBreak;
    }
    if (primersUsed)
        nullAdvice +=
            std::string("Primers designed for other species are more prone to null alleles") +
            kBreak;
    if (degradedUsed) {
        nullAdvice += std::string("Degraded DNA is more prone to null alleles") + kBreak;
        stutterAdvice += std::string("Degraded DNA is more prone to stuttering") + kBreak;
        dropoutAdvice += std::string("Degraded DNA is more prone to large allele dropout") + kBreak;
    }

    const std::string stutterSteps =
        std::string("To reduce the incidence of stuttering, try the following:") + kBreak +
        "1. Increase stringency" + kBreak + "2. Reduce the number of PCR cycles";
    Texts texts;
    if (nulls)
        texts[1] = nullAdvice +
                   "To reduce the incidence of null alleles, try the following:" + kBreak +
                   "1. Reduce stringency" + kBreak + "2. Redesign primers";
    if (dropout)
        texts[2] = dropoutAdvice +
                   "To reduce the incidence of large allele dropout, try the following:" + kBreak +
                   "1. Reduce stringency" + kBreak + "2. Increase extension time";
    if (stutter) texts[3] = stutterAdvice + stutterSteps;
    // The fourth kind of evidence gives the plain steps, without the conditions of the study.
    if (fourth) texts[3] = stutterSteps;
    return texts;
}

}  // namespace tavrelle
