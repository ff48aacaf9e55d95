#include "analysis/SeedText.h"

#include "base/Numbers.h"

namespace tavrelle {

SeedReading ParseSeed(std::string_view text) {
    SeedReading reading;
    const bool wholeForm = IsNumeric(text) && text.find('.') == std::string_view::npos;
    try {
        // Converted whatever the form: text that is no number fails here.
        reading.seed = TextToInt32(text);
    } catch (const ProgramError& error) {
        reading.conversionError = error;
        reading.refusal =
            wholeForm ? SeedReading::Refusal::TooLarge : SeedReading::Refusal::NotANumber;
        reading.seed = 0;
        return reading;
    }
    if (!wholeForm || reading.seed < 0) {
        reading.refusal = SeedReading::Refusal::NotPositiveInteger;
        reading.seed = 0;
    }
    return reading;
}

}  // namespace tavrelle
