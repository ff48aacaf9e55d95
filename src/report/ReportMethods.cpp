#include "report/ReportMethods.h"

#include <string_view>

#include "base/XmlText.h"
#include "report/CitationText.h"
#include "results/GraphModel.h"

namespace tavrelle {

namespace {

const char* const kEstimators = R"(<h3>Null allele estimates</h3>
<p>Each locus gets eight estimates of the frequency r of a null allele. With n scored individuals,
H<sub>o</sub> the share of them that are heterozygous, H<sub>e</sub> = 1 &minus; &Sigma; p<sub>i</sub><sup>2</sup>
the expected heterozygosity from the scored allele frequencies p<sub>i</sub>, and b the share of all
individuals that gave no genotype (blanks):</p>
<dl class="formulas">
<dt>Velmaret</dt><dd>r = 1 &minus; &Sigma;<sub>i</sub> q<sub>i</sub>, where q<sub>i</sub> = 1 &minus;
&radic;(1 &minus; c<sub>i</sub>/n) is the frequency that under Hardy-Weinberg proportions gives
the observed share c<sub>i</sub>/n of carriers of allele i.</dd>
<dt>Chakraborty</dt><dd>r = (H<sub>e</sub> &minus; H<sub>o</sub>) / (H<sub>e</sub> + H<sub>o</sub>)
[1].</dd>
<dt>Brookfield 1</dt><dd>r = (H<sub>e</sub> &minus; H<sub>o</sub>) / (1 + H<sub>e</sub>) [2].</dd>
<dt>Brookfield 2</dt><dd>the estimate that also counts the blanks as null homozygotes [2]: with
H<sub>e</sub>&prime; = H<sub>e</sub> / (1 &minus; b)<sup>2</sup>, H<sub>o</sub>&prime; the heterozygotes'
share of all individuals and x = (1 + b) H<sub>e</sub>&prime; &minus; H<sub>o</sub>&prime;,
r = [x + &radic;(x<sup>2</sup> + 4 b (1 &minus; H<sub>e</sub>&prime;<sup>2</sup>))] /
[2 (1 + H<sub>e</sub>&prime;)].</dd>
<dt>EM</dt><dd>the maximum likelihood r under Hardy-Weinberg proportions, fitted by the EM algorithm
[3]: a heterozygote i/j has probability 2 p<sub>i</sub> p<sub>j</sub>, an apparent homozygote i/i
p<sub>i</sub><sup>2</sup> + 2 p<sub>i</sub> r, and a blank r<sup>2</sup>: every blank counts as a
null homozygote.</dd>
<dt>EM, blanks missing</dt><dd>the same with the blanks left out, as missing at random.</dd>
<dt>Joint with F</dt><dd>r fitted together with an inbreeding coefficient F shared by the loci of the
population [4]: i/j (1 &minus; F) 2 p<sub>i</sub> p<sub>j</sub>, i/i F p<sub>i</sub> + (1 &minus; F)
(p<sub>i</sub><sup>2</sup> + 2 p<sub>i</sub> r), blank F r + (1 &minus; F) r<sup>2</sup>.</dd>
<dt>EM with failures</dt><dd>a null allele r and a rate &beta; of failed amplifications at each locus
[5]: a sample fails with probability &beta; whatever it carries, otherwise it shows its phenotype,
a null homozygote showing as a blank: P(blank) = &beta; + (1 &minus; &beta;) r<sup>2</sup>,
P(i/i) = (1 &minus; &beta;)(p<sub>i</sub><sup>2</sup> + 2 p<sub>i</sub> r), P(i/j) = 2 (1 &minus;
&beta;) p<sub>i</sub> p<sub>j</sub>. The blanks alone cannot tell r from &beta;; the excess of
homozygotes among the scored samples does. This estimate is the one to read where many samples
failed.</dd>
</dl>
<p>The closed-form estimates (the first four) are negative where a locus has fewer homozygotes than
Hardy-Weinberg proportions expect; a negative estimate is read as no null allele. The likelihood
estimates lie between 0 and 1.</p>
)";

const char* const kModels = R"(<h3>Likelihood models and model choice</h3>
<p>For each population eight nested models are fitted by maximum likelihood: neither null alleles
nor inbreeding, null alleles only, inbreeding only, and both; and each of these again with a rate
&beta; of failed amplifications at every locus with blanks, where a sample fails whatever it
carries: P(blank) = &beta; + (1 &minus; &beta;)(F r + (1 &minus; F) r<sup>2</sup>), a scored
genotype (1 &minus; &beta;) times its probability. For given F and frequencies the best &beta; is
closed-form; the rest is fitted by EM, the null homozygotes missing from a sample whose blanks
are failures added as expected counts. Without null alleles or failures a blank has probability
0, so at a locus with blanks those models have log-likelihood &minus;&infin;. The model with the
least AIC = 2k &minus; 2 log L (k its free parameters [6]) is chosen, the simpler on a tie; AIC
rather than likelihood ratio tests, because the models are not all nested in each other and F = 0,
r = 0 and &beta; = 0 lie on the boundary. Each population's section shows every model's
log-likelihood, parameters and AIC, the chosen model, F with its interval (from the model with null
alleles and inbreeding) and the verdict the program draws.</p>
)";

}  // namespace

std::string MethodsHtml(const RunSettings& settings) {
    const std::string rounds = std::to_string(settings.randomisations);
    const std::string confidence = EscapeXml(GraphModel::ConfidenceLabel(settings.confidence));
    std::string html =
        "<h2>Methods</h2>\n<h3>Randomisation test</h3>\n<p>At each locus the "
        "allele copies of the scored individuals are pooled and paired anew at "
        "random, " +
        rounds +
        " times. Each round gives the count of homozygotes for every allele size "
        "and the count of pairs for every difference in size between a genotype's "
        "two alleles. The observed counts are held against the rounds' " +
        confidence +
        " bounds (ranks in the sorted rounds). A null allele shows as an excess of "
        "homozygotes (zero size difference) spread over most allele sizes; large "
        "allele drop-out as the excess without that spread; stutter as the excess "
        "with too few heterozygotes one repeat unit apart. For each verdict the "
        "report gives the share of rounds at or beyond the observed count and its "
        "Monte Carlo standard error &radic;(f (1 &minus; f) / N); a verdict is "
        "<em>borderline</em> when that share lies within two standard errors of "
        "the threshold that decides it, and more randomisations would settle it."
        "</p>\n";
    html += kEstimators;
    html += kModels;
    html +=
        "<h3>Intervals</h3>\n<p>Every estimate, the failure rates and F have a 95% percentile "
        "interval from a bootstrap over individuals [7]: " +
        (settings.bootstrap > 0 ? std::to_string(settings.bootstrap) + " resamples"
                                : std::string("no resamples were drawn in this run")) +
        ", each resample drawing the population's individuals with replacement and keeping "
        "them whole at every locus. A percentile interval need not contain a closed-form "
        "estimate that lies at a bound.</p>\n";
    return html;
}

std::string ReferencesHtml() {
    return R"(<h2>References</h2>
<ol class="references">
<li>Chakraborty, R., De Andrade, M., Daiger, S. P. and Budowle, B. (1992). Apparent heterozygote
deficiencies observed in DNA typing data and their implications in forensic applications.
<i>Annals of Human Genetics</i> 56: 45&ndash;57. doi:10.1111/j.1469-1809.1992.tb01128.x</li>
<li>Brookfield, J. F. Y. (1996). A simple new method for estimating null allele frequency from
heterozygote deficiency. <i>Molecular Ecology</i> 5: 453&ndash;455.</li>
<li>Dempster, A. P., Laird, N. M. and Rubin, D. B. (1977). Maximum likelihood from incomplete data
via the EM algorithm. <i>Journal of the Royal Statistical Society, Series B</i> 39: 1&ndash;38.</li>
<li>Chybicki, I. J. and Burczyk, J. (2009). Simultaneous estimation of null alleles and inbreeding
coefficients. <i>Journal of Heredity</i> 100: 106&ndash;113. doi:10.1093/jhered/esn088</li>
<li>Kalinowski, S. T. and Taper, M. L. (2006). Maximum likelihood estimation of the frequency of
null alleles at microsatellite loci. <i>Conservation Genetics</i> 7: 991&ndash;995.</li>
<li>Akaike, H. (1974). A new look at the statistical model identification. <i>IEEE Transactions on
Automatic Control</i> 19: 716&ndash;723.</li>
<li>Efron, B. and Tibshirani, R. J. (1993). <i>An Introduction to the Bootstrap</i>. Chapman and
Hall, New York.</li>
</ol>
)";
}

std::string CitationHtml() {
    std::string_view cff = kCitationCff;
    while (!cff.empty() && cff.front() == '\n')
        cff.remove_prefix(1);
    return "<h2>How to cite Tavrelle</h2>\n<p>Cite the program with the version named at the top "
           "of this report. Its citation file (CITATION.cff, in the Citation File Format):</p>\n"
           "<pre>" +
           EscapeXml(std::string(cff)) + "</pre>\n";
}

}  // namespace tavrelle
