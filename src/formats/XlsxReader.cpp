#include "formats/XlsxReader.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <vector>

#include "base/Numbers.h"
#include "formats/OoxmlPackage.h"
#include "formats/WorkbookText.h"
#include "population/LineInput.h"

namespace tavrelle {

namespace {

constexpr std::int64_t kMaxRows = 1048576;
constexpr std::int64_t kMaxColumns = 16384;

ProgramError SheetError(const std::string& what) {
    return ProgramError(3021, "The worksheet " + what + ".");
}

bool EndsWith(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

// Text in a workbook escapes characters XML cannot carry as _xHHHH_; "_x005F_" is "_" itself.
std::string DecodeEscapes(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    auto hex = [](char c) -> int {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    };
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == '_' && i + 6 < text.size() && text[i + 1] == 'x' && text[i + 6] == '_') {
            int value = 0;
            bool valid = true;
            for (std::size_t k = 2; k < 6; ++k) {
                int digit = hex(text[i + k]);
                valid = valid && digit >= 0;
                value = value * 16 + std::max(digit, 0);
            }
            if (valid) {
                // Halves of surrogate pairs have no UTF-8 form of their own.
                auto point =
                    static_cast<unsigned>(value >= 0xD800 && value <= 0xDFFF ? 0xFFFD : value);
                if (point < 0x80) {
                    decoded += static_cast<char>(point);
                } else if (point < 0x800) {
                    decoded += static_cast<char>(0xC0 | (point >> 6));
                    decoded += static_cast<char>(0x80 | (point & 0x3F));
                } else {
                    decoded += static_cast<char>(0xE0 | (point >> 12));
                    decoded += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
                    decoded += static_cast<char>(0x80 | (point & 0x3F));
                }
                i += 7;
                continue;
            }
        }
        decoded += text[i++];
    }
    return decoded;
}

std::string_view TrimXmlSpace(std::string_view text) {
    const char* space = " \t\r\n";
    std::size_t first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    std::size_t last = text.find_last_not_of(space);
    return text.substr(first, last - first + 1);
}

std::optional<std::int64_t> WholeNumber(std::string_view text) {
    text = TrimXmlSpace(text);
    std::int64_t value = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
    return value;
}

// A cell reference such as "AB12": column and row from 0.
std::optional<std::pair<std::int64_t, std::int64_t>> CellReference(std::string_view reference) {
    std::size_t i = 0;
    std::int64_t column = 0;
    for (; i < reference.size() && i < 3; ++i) {
        char letter = reference[i];
        if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
        if (letter < 'A' || letter > 'Z') break;
        column = column * 26 + (letter - 'A' + 1);
    }
    if (i == 0) return std::nullopt;
    std::optional<std::int64_t> row = WholeNumber(reference.substr(i));
    if (!row || *row < 1 || *row > kMaxRows || column > kMaxColumns) return std::nullopt;
    return std::pair{column - 1, *row - 1};
}

// The relationships of a part: id to part name, and the first target of each type ending.
class Relationships : public XmlHandler {
public:
    explicit Relationships(std::string sourcePart) : sourcePart_(std::move(sourcePart)) {}

    void Start(std::string_view name, const char** attributes) override {
        if (name != "Relationship") return;
        auto mode = XmlAttribute(attributes, "TargetMode");
        if (mode && *mode == "External") return;
        auto id = XmlAttribute(attributes, "Id");
        auto type = XmlAttribute(attributes, "Type");
        auto target = XmlAttribute(attributes, "Target");
        if (!id || !type || !target) return;
        std::string part = ResolvePartName(sourcePart_, *target);
        targets_.emplace(std::string(*id), part);
        types_.emplace_back(std::string(*type), part);
    }
    void End(std::string_view) override {}
    void Text(std::string_view) override {}

    std::optional<std::string> Target(const std::string& id) const {
        auto it = targets_.find(id);
        if (it == targets_.end()) return std::nullopt;
        return it->second;
    }
    std::optional<std::string> OfType(std::string_view typeEnding) const {
        for (const auto& [type, part] : types_)
            if (EndsWith(type, typeEnding)) return part;
        return std::nullopt;
    }

private:
    std::string sourcePart_;
    std::map<std::string, std::string> targets_;
    std::vector<std::pair<std::string, std::string>> types_;
};

// The rels part beside a part: "xl/workbook.xml" has "xl/_rels/workbook.xml.rels".
std::string RelationshipsPart(const std::string& part) {
    std::size_t slash = part.rfind('/');
    std::string folder = slash == std::string::npos ? "" : part.substr(0, slash + 1);
    std::string file = slash == std::string::npos ? part : part.substr(slash + 1);
    return folder + "_rels/" + file + ".rels";
}

struct SheetEntry {
    std::string name;
    std::string relationship;
};

class WorkbookSheets : public XmlHandler {
public:
    void Start(std::string_view name, const char** attributes) override {
        if (name != "sheet") return;
        auto sheetName = XmlAttribute(attributes, "name");
        auto id = XmlAttribute(attributes, "id");
        if (sheetName && id) sheets.push_back({std::string(*sheetName), std::string(*id)});
    }
    void End(std::string_view) override {}
    void Text(std::string_view) override {}

    std::vector<SheetEntry> sheets;
};

// The shared string table: each <si> is the text of its <t> elements, phonetic runs left out.
class SharedStrings : public XmlHandler {
public:
    void Start(std::string_view name, const char**) override {
        if (name == "si") {
            inItem_ = true;
            current_.clear();
        } else if (name == "rPh") {
            ++phonetic_;
        } else if (name == "t" && inItem_ && phonetic_ == 0) {
            inText_ = true;
        }
    }
    void End(std::string_view name) override {
        if (name == "si" && inItem_) {
            if (static_cast<std::int64_t>(strings.size()) >= kMaxSheetCells)
                throw SheetError("has too many strings");
            strings.push_back(DecodeEscapes(current_));
            inItem_ = false;
        } else if (name == "rPh" && phonetic_ > 0) {
            --phonetic_;
        } else if (name == "t") {
            inText_ = false;
        }
    }
    void Text(std::string_view text) override {
        if (inText_) current_ += text;
    }

    std::vector<std::string> strings;

private:
    std::string current_;
    bool inItem_ = false;
    bool inText_ = false;
    int phonetic_ = 0;
};

// The cells of a sheet, sparse: a few bytes of a package can claim a cell in the far corner.
class XlsxSheet : public ExcelSheet {
public:
    std::int64_t RecordCount() const override { return rows_; }
    int FieldCount() const override { return static_cast<int>(fields_); }

    std::optional<std::string> Field(std::int64_t row, int field) const override {
        if (row < 0 || row >= rows_ || field < 0 || field >= fields_)
            throw ProgramError::NoCurrentRecord();
        auto found = cells_.find(row);
        if (found == cells_.end()) return std::nullopt;
        const auto& cells = found->second;
        auto cell = std::lower_bound(cells.begin(), cells.end(), field,
                                     [](const Cell& c, std::int64_t f) { return c.column < f; });
        if (cell == cells.end() || cell->column != field) return std::nullopt;
        return cell->value;
    }

    void Add(std::int64_t row, std::int64_t column, std::optional<std::string> value) {
        if (++count_ > kMaxSheetCells) throw SheetError("has too many cells");
        rows_ = std::max(rows_, row + 1);
        fields_ = std::max(fields_, column + 1);
        auto& cells = cells_[row];
        if (cells.empty() || cells.back().column < column) {
            cells.push_back({column, std::move(value)});
            return;
        }
        auto at = std::lower_bound(cells.begin(), cells.end(), column,
                                   [](const Cell& c, std::int64_t f) { return c.column < f; });
        if (at != cells.end() && at->column == column) {
            at->value = std::move(value);
        } else {
            cells.insert(at, Cell{column, std::move(value)});
        }
    }

private:
    struct Cell {
        std::int64_t column;
        std::optional<std::string> value;
    };
    std::map<std::int64_t, std::vector<Cell>> cells_;
    std::int64_t rows_ = 0;
    std::int64_t fields_ = 0;
    std::int64_t count_ = 0;
};

// Reads <sheetData>: rows, cells and their values by cell type. Every cell element counts
// towards the used range, also one without a value, as a formatted empty cell does.
class SheetCells : public XmlHandler {
public:
    SheetCells(XlsxSheet& sheet, const std::vector<std::string>& strings)
        : sheet_(sheet), strings_(strings) {}

    void Start(std::string_view name, const char** attributes) override {
        if (name == "sheetData") {
            inData_ = true;
        } else if (!inData_) {
            return;
        } else if (name == "row") {
            auto number = XmlAttribute(attributes, "r");
            if (number) {
                std::optional<std::int64_t> r = WholeNumber(*number);
                if (!r || *r < 1 || *r > kMaxRows) throw SheetError("has a bad row number");
                row_ = *r - 1;
            } else {
                ++row_;
            }
            if (row_ >= kMaxRows) throw SheetError("has too many rows");
            nextColumn_ = 0;
        } else if (name == "c") {
            inCell_ = true;
            cellRow_ = std::max<std::int64_t>(row_, 0);
            cellColumn_ = nextColumn_;
            if (auto reference = XmlAttribute(attributes, "r")) {
                auto position = CellReference(*reference);
                if (!position) throw SheetError("has a bad cell reference");
                cellColumn_ = position->first;
                cellRow_ = position->second;
            }
            if (cellColumn_ >= kMaxColumns) throw SheetError("has too many columns");
            auto type = XmlAttribute(attributes, "t");
            type_ = type ? std::string(*type) : std::string("n");
            value_.reset();
            inline_.reset();
        } else if (inCell_ && name == "v") {
            inValue_ = true;
            value_ = std::string();
        } else if (inCell_ && name == "is") {
            inInline_ = true;
            inline_ = std::string();
        } else if (inInline_ && name == "rPh") {
            ++phonetic_;
        } else if (inInline_ && name == "t" && phonetic_ == 0) {
            inText_ = true;
        }
    }

    void End(std::string_view name) override {
        if (!inData_) return;
        if (name == "sheetData") {
            inData_ = false;
        } else if (name == "c" && inCell_) {
            sheet_.Add(cellRow_, cellColumn_, CellValue());
            nextColumn_ = cellColumn_ + 1;
            inCell_ = false;
        } else if (name == "v") {
            inValue_ = false;
        } else if (name == "is") {
            inInline_ = false;
        } else if (name == "rPh" && phonetic_ > 0) {
            --phonetic_;
        } else if (name == "t") {
            inText_ = false;
        }
    }

    void Text(std::string_view text) override {
        if (inValue_ && value_) *value_ += text;
        if (inText_ && inline_) *inline_ += text;
    }

private:
    std::optional<std::string> CellValue() const {
        if (type_ == "inlineStr") {
            if (!inline_) return std::nullopt;
            return DecodeEscapes(*inline_);
        }
        if (!value_) return std::nullopt;
        if (type_ == "s") {
            std::optional<std::int64_t> index = WholeNumber(*value_);
            if (!index || *index < 0 || *index >= static_cast<std::int64_t>(strings_.size()))
                throw SheetError("names a string that is not there");
            return strings_[static_cast<std::size_t>(*index)];
        }
        if (type_ == "str") return DecodeEscapes(*value_);
        if (type_ == "d") return std::string(TrimXmlSpace(*value_));
        if (type_ == "e") return std::nullopt;
        if (type_ == "n" || type_ == "b") {
            std::string_view text = TrimXmlSpace(*value_);
            if (text.empty()) return std::nullopt;
            double number = 0.0;
            auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), number);
            if (ec == std::errc::result_out_of_range) throw SheetError("holds a number too large");
            if (ec != std::errc() || end != text.data() + text.size())
                throw SheetError("holds a number that is no number");
            return NumberCellText(number);
        }
        return std::nullopt;
    }

    XlsxSheet& sheet_;
    const std::vector<std::string>& strings_;
    bool inData_ = false;
    bool inCell_ = false;
    bool inValue_ = false;
    bool inInline_ = false;
    bool inText_ = false;
    int phonetic_ = 0;
    std::int64_t row_ = -1;
    std::int64_t nextColumn_ = 0;
    std::int64_t cellRow_ = 0;
    std::int64_t cellColumn_ = 0;
    std::string type_;
    std::optional<std::string> value_;
    std::optional<std::string> inline_;
};

class XlsxWorkbook : public ExcelWorkbook {
public:
    explicit XlsxWorkbook(std::string bytes) : package_(std::move(bytes)) {
        Relationships packageRelationships("");
        package_.ParsePart("_rels/.rels", packageRelationships);
        workbookPart_ = packageRelationships.OfType("/officeDocument").value_or("xl/workbook.xml");
        WorkbookSheets sheets;
        package_.ParsePart(workbookPart_, sheets);
        sheets_ = std::move(sheets.sheets);
        const std::string relationshipsPart = RelationshipsPart(workbookPart_);
        relationships_ = std::make_unique<Relationships>(workbookPart_);
        if (package_.HasPart(relationshipsPart))
            package_.ParsePart(relationshipsPart, *relationships_);
    }

    std::vector<std::string> SheetNames() const override {
        std::vector<std::string> names;
        for (const SheetEntry& sheet : sheets_)
            names.push_back(sheet.name);
        return names;
    }

    std::unique_ptr<ExcelSheet> OpenSheet(const std::string& name) override {
        const std::string wanted = UpperCase(name);
        auto entry = std::find_if(sheets_.begin(), sheets_.end(), [&](const SheetEntry& sheet) {
            return UpperCase(sheet.name) == wanted;
        });
        if (entry == sheets_.end()) return nullptr;
        std::optional<std::string> part = relationships_->Target(entry->relationship);
        if (!part) throw SheetError("is missing from the workbook");

        SharedStrings strings;
        std::optional<std::string> stringsPart = relationships_->OfType("/sharedStrings");
        if (stringsPart && package_.HasPart(*stringsPart))
            package_.ParsePart(*stringsPart, strings);
        auto sheet = std::make_unique<XlsxSheet>();
        SheetCells cells(*sheet, strings.strings);
        package_.ParsePart(*part, cells);
        return sheet;
    }

private:
    OoxmlPackage package_;
    std::string workbookPart_;
    std::vector<SheetEntry> sheets_;
    std::unique_ptr<Relationships> relationships_;
};

}  // namespace

std::unique_ptr<ExcelWorkbook> OpenXlsxWorkbook(std::string bytes) {
    try {
        return std::make_unique<XlsxWorkbook>(std::move(bytes));
    } catch (const ProgramError&) {
        throw WorkbookUnreadable();
    }
}

std::unique_ptr<ExcelWorkbook> XlsxSheetReader::OpenWorkbook(const std::string& fileLocation) {
    return OpenXlsxWorkbook(ReadWholeFile(fileLocation));
}

}  // namespace tavrelle
