#include "batch/DataConversion.h"

#include <stdexcept>

#include "base/AtomicFile.h"
#include "population/FileErrors.h"

namespace tavrelle {

DataFileTarget ConvertTargetOf(const BatchOptions& options) {
    if (!options.convertTo) return DataFileTargetOfName(options.convertOutput);
    if (std::optional<DataFileTarget> target = DataFileTargetNamed(*options.convertTo))
        return *target;
    throw std::invalid_argument("--to: choose " + DataFileTargetNames() + " (got '" +
                                *options.convertTo + "').");
}

std::string RefusalText(const GenotypeRead& read) {
    std::string text = read.ProblemText();
    if (!text.empty()) text.pop_back();
    if (read.problemCount > 1) text = std::to_string(read.problemCount) + " problems:\n" + text;
    return text;
}

std::string WriteConversion(const GenotypeData& data, const BatchOptions& options) {
    const std::string& output = options.convertOutput;
    const DataFileTarget target = ConvertTargetOf(options);
    GenotypeRead refusal;
    refusal.file = output;
    const std::string bytes = DataFileBytes(data, target, output, refusal);
    if (!refusal.Ok())
        throw std::runtime_error("Could not write " + output + " as a " +
                                 DataFileTargetTitle(target) + ": " + RefusalText(refusal));
    if (const int failure = WriteFileAtomically(output, bytes); failure != 0) {
        // Worded as the desktop's save tells it.
        RecordingPrompter prompter;
        ReportSaveFailure(FileError(failure), prompter);
        std::string message = "Could not write " + output + ":";
        for (const Message& m : prompter.messages)
            for (char c : "\n" + m.text)
                if (c != '\r') message += c;
        throw std::runtime_error(message);
    }
    std::size_t samples = 0;
    for (const GenotypePopulation& population : data.populations)
        samples += population.samples.size();
    const std::size_t populations = data.populations.size();
    return "Wrote " + output + " (" + DataFileTargetTitle(target) +
           "): " + std::to_string(samples) + " samples in " + std::to_string(populations) +
           " population" + (populations == 1 ? "" : "s") + ", " + std::to_string(data.loci.size()) +
           " loci.\n";
}

}  // namespace tavrelle
