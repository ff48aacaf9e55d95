#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "nulls/LocusGenotypeTally.h"
#include "nulls/ModelBoundary.h"
#include "nulls/NullInbreedingModel.h"

namespace tavrelle {

// The parameters as one vector, for the extrapolation: F first, then per locus its visible
// alleles and its null allele.
class ParameterLayout {
public:
    explicit ParameterLayout(std::span<const LocusGenotypeTally> loci);
    std::size_t Size() const { return size_; }
    // Block 0 is F; block l + 1 is locus l's frequencies, null allele last.
    std::size_t Blocks() const { return offsets_.size() + 1; }
    std::size_t BlockBegin(std::size_t block) const { return block == 0 ? 0 : offsets_[block - 1]; }
    std::size_t BlockEnd(std::size_t block) const {
        return block < offsets_.size() ? offsets_[block] : size_;
    }
    std::size_t Visible(std::size_t locus) const { return offsets_[locus]; }
    std::size_t Null(std::size_t locus, const LocusGenotypeTally& tally) const {
        return offsets_[locus] + tally.alleles.size();
    }

private:
    std::vector<std::size_t> offsets_;
    std::size_t size_ = 1;
};

// The EM fit of the model (NullInbreedingModel.h says how it proceeds) for one set of loci and
// terms; the loci must outlive it.
class ModelFitter {
public:
    ModelFitter(std::span<const LocusGenotypeTally> loci, ModelTerms terms);

    // The start: p_n and F at 0.05 where the terms free them, the observed allele frequencies
    // scaled to leave room for p_n.
    std::vector<double> Start() const;
    // The parameters of an earlier fit of the same loci and terms as a start. F, and a null
    // allele that fit put at 0, start from 0.01, so that EM finds out afresh which side of the
    // boundary this sample's maximum lies on.
    std::vector<double> From(const ModelFit& fit) const;
    // Whether EM raises F from just above 0 at the given fit with F = 0.
    bool Rises(const ModelFit& atZero) const;

    ModelFit Fit(std::vector<double> theta) const;

private:
    struct Scratch {
        Scratch(std::size_t size, std::size_t blocks)
            : one(size), two(size), jump(size), alpha(blocks) {}
        std::vector<double> one;
        std::vector<double> two;
        std::vector<double> jump;
        std::vector<double> alpha;
    };

    void Step(const std::vector<double>& theta, std::vector<double>& next) const;
    double Likelihood(const std::vector<double>& theta) const;
    double Objective(const std::vector<double>& theta) const;
    bool Inside(const std::vector<double>& theta) const;
    bool Cycle(std::vector<double>& theta, double& objective, const BoundaryHold& hold,
               Scratch& scratch, int& iterations) const;
    std::vector<double> Packed(const ModelFit& fit) const;
    std::vector<std::size_t> Boundary() const;

    std::span<const LocusGenotypeTally> loci_;
    ModelTerms terms_;
    ParameterLayout layout_;
    std::vector<std::size_t> boundary_;
};

}  // namespace tavrelle
