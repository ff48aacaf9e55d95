// tavrelle-make-questionnaire OUTPUT.xls SHEET.tsv
//
// Writes the questionnaire that lies beside Tavrelle as an Excel 97-2003 workbook of one sheet,
// "Questionnaire", through Tavrelle's own workbook writer. Each line of the tab-separated source
// is a row of the sheet, each field a cell; empty fields leave their cell empty.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "formats/Biff8Writer.h"
#include "population/WorksheetCells.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: tavrelle-make-questionnaire OUTPUT.xls SHEET.tsv\n";
        return 2;
    }
    std::ifstream source(argv[2], std::ios::binary);
    if (!source) {
        std::cerr << "tavrelle-make-questionnaire: cannot read " << argv[2] << "\n";
        return 1;
    }
    tavrelle::WorksheetCells cells;
    std::string line;
    std::int64_t row = 0;
    while (std::getline(source, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::istringstream fields(line);
        std::string field;
        std::int64_t column = 0;
        while (std::getline(fields, field, '\t')) {
            if (!field.empty()) cells.push_back({row, column, field});
            ++column;
        }
        ++row;
    }
    try {
        const std::string workbook = tavrelle::XlsWorkbookFile(cells, "Questionnaire");
        std::ofstream out(argv[1], std::ios::binary | std::ios::trunc);
        out.write(workbook.data(), static_cast<std::streamsize>(workbook.size()));
        if (!out) throw std::runtime_error("cannot write the workbook");
    } catch (const std::exception& failure) {
        std::cerr << "tavrelle-make-questionnaire: " << argv[1] << ": " << failure.what() << "\n";
        return 1;
    }
    return 0;
}
