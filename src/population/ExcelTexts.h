#pragma once

#include <string>
#include <string_view>

namespace tavrelle {

// The texts of the workbook screens and boxes, in one place for the reader, the writer, the
// desktop's frmSheetDialog and frmExcelExample, and the batch program's reports.

// frmSheetDialog: asks which sheet of the workbook holds the data.
inline constexpr std::string_view kSheetDialogCaption = "Excel Sheet Name";
inline constexpr std::string_view kSheetLabel =
    "Enter the name of the Excel sheet containing the data.";
inline constexpr std::string_view kDefaultSheetName = "Sheet1";
inline constexpr std::string_view kSheetNameMissing = "Please enter a sheet name.";

// frmExcelExample: the report of a sheet that cannot be used.
inline constexpr std::string_view kExcelExampleLabel1 =
    "The requested Excel file is not in the required format.";
inline constexpr std::string_view kExcelExampleLabel2 =
    "Please ensure that the data in the Excel sheet are in the format shown below.\r\n"
    "If only one population is being analysed, delete the 'pop' on row 8 and all the associated "
    "data.\r\n"
    "Add further loci or populations using the format shown.\r\n"
    "The number of loci must be the same in each population.\r\n"
    "Loading will also fail if 'Clear Contents' has been used to remove unwanted data rather "
    "than 'Delete'.";

// The reader's boxes.
inline constexpr std::string_view kSheetNotFoundCaption = "Not Found";
inline std::string SheetNotFoundText(std::string_view sheetName) {
    return "The sheet named " + std::string(sheetName) + " has not been found.";
}
inline constexpr std::string_view kNumericNamesCaption = "Possible input error";
inline constexpr std::string_view kNumericNamesText =
    "All the loci names appear to be numeric. \r\n"
    "Click Cancel to see an example or OK to continue.";

// The box the file command shows when a workbook cannot be opened at all.
inline constexpr std::string_view kOpenErrorCaption = "Error Opening File";

}  // namespace tavrelle
