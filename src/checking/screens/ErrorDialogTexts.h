#pragma once

#include <string_view>

namespace tavrelle {

// The texts of the Possible Errors dialog (frmErrorDialog), which asks what to do with the
// cells the check listed.
inline constexpr std::string_view kErrorDialogCaption = "Possible Errors";
inline constexpr std::string_view kPossibleLabel =
    "Possible errors have been found in the data.\r\n"
    "These are detailed in the panel on the left of the screen.";
inline constexpr std::string_view kWarningLabel =
    "Alleles with a value of zero will not be included in the analysis.";
inline constexpr std::string_view kCorrectButton = "&Correct";
inline constexpr std::string_view kCorrectLabel = "Go back to the DataGrid and correct the values.";
inline constexpr std::string_view kOmitButton = "&Omit";
inline constexpr std::string_view kOmitLabel = "Omit the suspect data from analysis.";
inline constexpr std::string_view kProceedButton = "&Proceed";
inline constexpr std::string_view kProceedLabel =
    "Proceed with analysis and include the suspect data.";

}  // namespace tavrelle
