#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "../support/Json.h"
#include "../support/ProgramRun.h"
#include "../support/TempFolder.h"
#include "base/Numbers.h"
#include "formats/SheetReaders.h"
#include "population/FileKind.h"
#include "population/InputDataSource.h"

namespace tavrelle::testing {

// The workbook tests keep their own name for the shared per-test folder.
using WorkbookFolder = TempFolder;

// The Python that has xlrd and xlwt (scripts/setup installs Debian's python3-xlrd and
// python3-xlwt, which belong to /usr/bin/python3 even where another python3 comes first on the
// path); empty when there is none.
inline const std::string& PythonWithXlrd() {
    static const std::string python = [] {
        for (std::string candidate : {"/usr/bin/python3", "python3"}) {
            if (RunCommand(candidate + " -c 'import xlrd, xlwt' 2>/dev/null").exitCode == 0)
                return candidate;
        }
        return std::string();
    }();
    return python;
}

// A sheet for the tool: rows of JSON values such as "\"a1\"", "102" or "null" (an empty cell
// with a format); "" leaves the cell out.
struct SheetRows {
    std::string name;
    std::vector<std::vector<std::string>> rows;
};

inline std::string WorkbookJson(const std::vector<SheetRows>& sheets, bool prefixed = false) {
    std::string description =
        "{\"prefixed\": " + std::string(prefixed ? "true" : "false") + ", \"sheets\": [";
    for (std::size_t s = 0; s < sheets.size(); ++s) {
        if (s > 0) description += ", ";
        description += "{\"name\": \"" + sheets[s].name + "\", \"cells\": [";
        bool first = true;
        for (std::size_t row = 0; row < sheets[s].rows.size(); ++row) {
            for (std::size_t column = 0; column < sheets[s].rows[row].size(); ++column) {
                const std::string& value = sheets[s].rows[row][column];
                if (value.empty()) continue;
                if (!first) description += ", ";
                first = false;
                description +=
                    "[" + std::to_string(row) + ", " + std::to_string(column) + ", " + value + "]";
            }
        }
        description += "]}";
    }
    return description + "]}";
}

// The independent reader and writer of tests/data/excel/workbook_tool.py.
class WorkbookTool {
public:
    explicit WorkbookTool(const WorkbookFolder& folder) : folder_(folder) {}

    // Writes a workbook from a description (see the script); the format by the name's ending.
    std::string Make(const std::string& name, const std::string& description) const {
        std::string descriptionFile = folder_.Write(name + ".json", description);
        std::string file = folder_.File(name);
        CommandResult made = Run("make " + Quoted(file) + " " + Quoted(descriptionFile));
        EXPECT_EQ(made.exitCode, 0) << made.output;
        return file;
    }

    // Every sheet's cells as the script reads them: {"sheets": [{"name", "cells"}]}.
    Json Dump(const std::string& file) const {
        CommandResult dumped = Run("dump " + Quoted(file));
        EXPECT_EQ(dumped.exitCode, 0) << dumped.output;
        try {
            return Json::Parse(dumped.output);
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what() << ": " << dumped.output;
            return Json{};
        }
    }

private:
    CommandResult Run(const std::string& arguments) const {
        const std::string& python = PythonWithXlrd();
        if (python.empty()) {
            ADD_FAILURE() << "python3 with xlrd and xlwt is missing: run scripts/setup";
            return {};
        }
        return RunCommand(python + " " +
                          Quoted(std::string(TAVRELLE_TEST_DATA) + "/excel/workbook_tool.py") +
                          " " + arguments + " 2>&1");
    }

    const WorkbookFolder& folder_;
};

// A workbook loaded as the open command loads it: the reader by the name's ending.
struct LoadedWorkbook {
    LoadedWorkbook(const std::string& file, const std::string& sheet, RecordingPrompter& prompter)
        : reader(MakeExcelSheetReader(KindOfFile(file))) {
        StoreRequest request;
        request.fileLocation = file;
        request.isExcel = true;
        request.excelSheetName = sheet;
        request.excelReader = reader.get();
        store = std::make_unique<InputDataSource>(request, prompter);
    }

    bool Loaded() const { return !store->LocusNames().front().empty(); }

    std::unique_ptr<ExcelSheetReader> reader;
    std::unique_ptr<InputDataSource> store;
};

// The rows of a table from row 2 on, every column: what the grid would show of rsAllData.
inline std::vector<std::vector<std::string>> BodyRows(const Table& table) {
    std::vector<std::vector<std::string>> rows;
    for (std::int64_t row = 2; row < table.RecordCount(); ++row) {
        std::vector<std::string> cells;
        for (int column = 0; column < table.ColumnCount(); ++column)
            cells.push_back(table.Cell(row, column));
        rows.push_back(cells);
    }
    return rows;
}

// The cell [row, column, type, value] lists of a dumped sheet, as text for comparison:
// "r,c:s:text" or "r,c:n:102".
inline std::vector<std::string> CellList(const Json& sheet) {
    std::vector<std::string> list;
    for (const Json& cell : std::get<Json::Array>(sheet["cells"].value)) {
        std::string item = std::to_string(static_cast<int>(std::get<double>(cell[0].value))) + "," +
                           std::to_string(static_cast<int>(std::get<double>(cell[1].value))) + ":" +
                           std::get<std::string>(cell[2].value) + ":";
        const auto& value = cell[3].value;
        if (const auto* text = std::get_if<std::string>(&value)) {
            item += *text;
        } else if (const auto* number = std::get_if<double>(&value)) {
            item += DefaultText(*number);
        } else if (const auto* flag = std::get_if<bool>(&value)) {
            item += *flag ? "true" : "false";
        }
        list.push_back(item);
    }
    return list;
}

}  // namespace tavrelle::testing
