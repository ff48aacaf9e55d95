#include "nulls/GenotypeListText.h"

namespace tavrelle {

std::string GenotypeListText(const std::string& locusName, const AdjustedGenotypeList& genotypes) {
    std::string text =
        "Genotypes are ordered by allele size.\r\nNote: Row numbers do not correspond to the "
        "original sample numbers.\r\nLocus: " +
        locusName + "\r\n";
    for (std::size_t i = 0; i < genotypes.size(); ++i)
        text += std::to_string(i + 1) + "\t" + std::to_string(genotypes[i].low) + "\t" +
                std::to_string(genotypes[i].high) + "\r\n";
    return text;
}

}  // namespace tavrelle
