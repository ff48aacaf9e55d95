#include "formats/DataFileWriting.h"

#include <array>
#include <filesystem>

#include "base/Numbers.h"
#include "formats/GenotypeWorkbooks.h"
#include "population/GenalexTable.h"
#include "population/GenepopText.h"
#include "population/StructureText.h"
#include "population/TidyGenotypes.h"

namespace tavrelle {

namespace {

struct NamedTarget {
    const char* name;
    DataFileTarget target;
    const char* title;
};

const std::array<NamedTarget, 8> kTargets{{
    {"genepop", DataFileTarget::Genepop, "Genepop file"},
    {"xlsx", DataFileTarget::Xlsx, "Excel workbook"},
    {"xls", DataFileTarget::Xls, "Excel 97-2003 workbook"},
    {"genalex", DataFileTarget::GenalexCsv, "GenAlEx CSV file"},
    {"genalex-xlsx", DataFileTarget::GenalexXlsx, "GenAlEx Excel workbook"},
    {"genalex-xls", DataFileTarget::GenalexXls, "GenAlEx Excel 97-2003 workbook"},
    {"tidy", DataFileTarget::Tidy, "tidy CSV table"},
    {"structure", DataFileTarget::Structure, "STRUCTURE file"},
}};

}  // namespace

std::optional<DataFileTarget> DataFileTargetNamed(std::string_view name) {
    for (const NamedTarget& named : kTargets)
        if (name == named.name) return named.target;
    return std::nullopt;
}

std::string DataFileTargetNames() {
    std::string names;
    for (const NamedTarget& named : kTargets)
        names += (names.empty() ? "" : ", ") + std::string(named.name);
    return names;
}

DataFileTarget DataFileTargetOfName(std::string_view fileName) {
    const std::string upper = UpperCase(fileName);
    if (upper.ends_with(".GENALEX.XLSX")) return DataFileTarget::GenalexXlsx;
    if (upper.ends_with(".GENALEX.XLS")) return DataFileTarget::GenalexXls;
    if (upper.ends_with(".XLSX")) return DataFileTarget::Xlsx;
    if (upper.ends_with("XLS")) return DataFileTarget::Xls;
    if (upper.ends_with(".TIDY.CSV")) return DataFileTarget::Tidy;
    if (upper.ends_with(".CSV")) return DataFileTarget::GenalexCsv;
    if (upper.ends_with(".STR")) return DataFileTarget::Structure;
    return DataFileTarget::Genepop;
}

std::string DataFileTargetTitle(DataFileTarget target) {
    for (const NamedTarget& named : kTargets)
        if (named.target == target) return named.title;
    return {};
}

std::string DataFileBytes(const GenotypeData& data, DataFileTarget target,
                          const std::string& fileName, GenotypeRead& refusal) {
    switch (target) {
        case DataFileTarget::Genepop: {
            if (!data.title.empty()) return GenepopText(data, refusal);
            GenotypeData titled = data;
            titled.title =
                "Title line:  \"" + std::filesystem::path(fileName).filename().string() + "\"";
            return GenepopText(titled, refusal);
        }
        case DataFileTarget::Xlsx:
            return TavrelleWorkbookBytes(data, DataFormat::Xlsx);
        case DataFileTarget::Xls:
            return TavrelleWorkbookBytes(data, DataFormat::Xls);
        case DataFileTarget::GenalexCsv:
            return GenalexCsv(data);
        case DataFileTarget::GenalexXlsx:
            return GenalexWorkbookBytes(data, DataFormat::Xlsx);
        case DataFileTarget::GenalexXls:
            return GenalexWorkbookBytes(data, DataFormat::Xls);
        case DataFileTarget::Tidy:
            return TidyCsv(data);
        case DataFileTarget::Structure:
            return StructureText(data, refusal);
    }
    return {};
}

}  // namespace tavrelle
