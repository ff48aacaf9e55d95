#include "formats/Biff8Writer.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <optional>

#include "base/ProgramError.h"
#include "formats/Ole2Container.h"
#include "formats/WorkbookText.h"

namespace tavrelle {

namespace {

// Record numbers of the BIFF8 records written.
enum Biff : std::uint16_t {
    kBof = 0x0809,
    kEof = 0x000A,
    kCodepage = 0x0042,
    kWindow1 = 0x003D,
    kFont = 0x0031,
    kXf = 0x00E0,
    kStyle = 0x0293,
    kBoundSheet = 0x0085,
    kSst = 0x00FC,
    kExtSst = 0x00FF,
    kContinue = 0x003C,
    kDimensions = 0x0200,
    kNumber = 0x0203,
    kLabelSst = 0x00FD,
    kWindow2 = 0x023E,
};

// Readers refuse records with bodies longer than this.
constexpr std::size_t kMaxRecordBody = 8224;
// Streams shorter than this would go to the container's small-block stream, which some readers
// do not follow for the Workbook stream.
constexpr std::size_t kMinStreamSize = 4096;
// 15 style XFs and the cell XF every cell uses, as the format expects them.
constexpr std::uint16_t kStyleXfCount = 15;
constexpr std::uint16_t kCellXf = 15;

class Bytes {
public:
    void U8(unsigned value) { bytes_ += static_cast<char>(value & 0xFFu); }
    void U16(unsigned value) {
        U8(value);
        U8(value >> 8);
    }
    void U32(std::uint32_t value) {
        U16(value & 0xFFFFu);
        U16(value >> 16);
    }
    void F64(double value) {
        auto bits = std::bit_cast<std::uint64_t>(value);
        U32(static_cast<std::uint32_t>(bits & 0xFFFFFFFFu));
        U32(static_cast<std::uint32_t>(bits >> 32));
    }
    void Append(std::string_view more) { bytes_ += more; }
    std::size_t Size() const { return bytes_.size(); }
    const std::string& Str() const { return bytes_; }

private:
    std::string bytes_;
};

class RecordStream {
public:
    void Record(std::uint16_t type, const Bytes& body) {
        if (body.Size() > kMaxRecordBody) throw ProgramError(1004, "A record is too long.");
        stream_.U16(type);
        stream_.U16(static_cast<unsigned>(body.Size()));
        stream_.Append(body.Str());
    }
    std::size_t Position() const { return stream_.Size(); }
    std::string Take() { return stream_.Str(); }

private:
    Bytes stream_;
};

bool NeedsHighBytes(const std::u16string& text) {
    return std::any_of(text.begin(), text.end(), [](char16_t c) { return c > 0xFF; });
}

void Characters(Bytes& body, const std::u16string& text, std::size_t from, std::size_t count,
                bool wide) {
    for (std::size_t i = from; i < from + count; ++i) {
        if (wide) {
            body.U16(text[i]);
        } else {
            body.U8(text[i]);
        }
    }
}

// A sheet or font name: at most 255 characters behind a one-byte count.
void ShortString(Bytes& body, std::string_view utf8) {
    std::u16string text = ToUtf16(utf8);
    if (text.size() > 255) text.resize(255);
    bool wide = NeedsHighBytes(text);
    body.U8(static_cast<unsigned>(text.size()));
    body.U8(wide ? 1u : 0u);
    Characters(body, text, 0, text.size(), wide);
}

// The shared string table: SST and its CONTINUE records, and where each string starts for the
// EXTSST index.
class SharedStrings {
public:
    std::uint32_t Index(const std::string& utf8) {
        ++references_;
        auto [it, added] = indices_.try_emplace(utf8, static_cast<std::uint32_t>(strings_.size()));
        if (added) strings_.push_back(ToUtf16(utf8));
        return it->second;
    }

    void Write(RecordStream& records) {
        std::vector<Bytes> bodies(1);
        bodies[0].U32(references_);
        bodies[0].U32(static_cast<std::uint32_t>(strings_.size()));
        struct Start {
            std::size_t record;
            std::size_t offset;
        };
        std::vector<Start> starts;
        for (const std::u16string& text : strings_) {
            const bool wide = NeedsHighBytes(text);
            const std::size_t unit = wide ? 2 : 1;
            // The count and flags stay with at least the first character.
            if (bodies.back().Size() + 3 + unit > kMaxRecordBody) bodies.emplace_back();
            starts.push_back({bodies.size() - 1, bodies.back().Size()});
            bodies.back().U16(static_cast<unsigned>(text.size()));
            bodies.back().U8(wide ? 1u : 0u);
            std::size_t written = 0;
            while (written < text.size()) {
                std::size_t room = (kMaxRecordBody - bodies.back().Size()) / unit;
                if (room == 0) {
                    // A string carried on into a CONTINUE record repeats its flags there.
                    bodies.emplace_back();
                    bodies.back().U8(wide ? 1u : 0u);
                    continue;
                }
                std::size_t count = std::min(room, text.size() - written);
                Characters(bodies.back(), text, written, count, wide);
                written += count;
            }
        }

        std::vector<std::size_t> recordPositions;
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            recordPositions.push_back(records.Position());
            records.Record(i == 0 ? kSst : kContinue, bodies[i]);
        }

        // Every eighth (or more) string's position, for readers that seek.
        const std::size_t perBucket = std::max<std::size_t>(8, strings_.size() / 128 + 1);
        Bytes index;
        index.U16(static_cast<unsigned>(perBucket));
        for (std::size_t s = 0; s < starts.size(); s += perBucket) {
            const Start& start = starts[s];
            index.U32(static_cast<std::uint32_t>(recordPositions[start.record] + 4 + start.offset));
            index.U16(static_cast<unsigned>(4 + start.offset));
            index.U16(0);
        }
        records.Record(kExtSst, index);
    }

private:
    std::map<std::string, std::uint32_t> indices_;
    std::vector<std::u16string> strings_;
    std::uint32_t references_ = 0;
};

void Bof(RecordStream& records, unsigned substreamType) {
    Bytes body;
    body.U16(0x0600);  // BIFF8
    body.U16(substreamType);
    body.U16(0x0DBB);  // build
    body.U16(0x07CC);  // year
    body.U32(0x00000041);
    body.U32(0x00000006);
    records.Record(kBof, body);
}

void Eof(RecordStream& records) {
    records.Record(kEof, Bytes());
}

void Font(RecordStream& records) {
    Bytes body;
    body.U16(200);     // 10 points, in twentieths
    body.U16(0);       // plain
    body.U16(0x7FFF);  // the window text colour
    body.U16(400);     // normal weight
    body.U16(0);       // no super- or subscript
    body.U8(0);        // no underline
    body.U8(0);        // family
    body.U8(0);        // character set
    body.U8(0);
    ShortString(body, "Arial");
    records.Record(kFont, body);
}

void Xf(RecordStream& records, unsigned font, bool style) {
    Bytes body;
    body.U16(font);
    body.U16(0);                          // the General number format
    body.U16(style ? 0xFFF5u : 0x0001u);  // locked; a style XF, or a cell XF of style 0
    body.U8(0x20);                        // aligned to the bottom
    body.U8(0);
    body.U8(0);
    body.U8(style ? 0xF4u : 0u);
    body.U32(0);  // no borders
    body.U32(0);
    body.U16(0x20C0);  // the automatic pattern colours
    records.Record(kXf, body);
}

struct Extent {
    std::uint32_t firstRow = 0;
    std::uint32_t lastRowPlusOne = 0;
    unsigned firstColumn = 0;
    unsigned lastColumnPlusOne = 0;
};

Extent UsedRange(const WorksheetCells& cells) {
    Extent extent;
    if (cells.empty()) return extent;
    std::int64_t firstRow = cells.front().row;
    std::int64_t lastRow = cells.front().row;
    std::int64_t firstColumn = cells.front().column;
    std::int64_t lastColumn = cells.front().column;
    for (const WorksheetCell& cell : cells) {
        if (cell.row < 0 || cell.row >= kXlsMaxRows || cell.column < 0 ||
            cell.column >= kXlsMaxColumns)
            throw ProgramError(1004,
                               "The data need more than 65536 rows or 256 columns, the most an "
                               "Excel 97-2003 sheet holds.");
        firstRow = std::min(firstRow, cell.row);
        lastRow = std::max(lastRow, cell.row);
        firstColumn = std::min(firstColumn, cell.column);
        lastColumn = std::max(lastColumn, cell.column);
    }
    extent.firstRow = static_cast<std::uint32_t>(firstRow);
    extent.lastRowPlusOne = static_cast<std::uint32_t>(lastRow + 1);
    extent.firstColumn = static_cast<unsigned>(firstColumn);
    extent.lastColumnPlusOne = static_cast<unsigned>(lastColumn + 1);
    return extent;
}

}  // namespace

std::string Biff8WorkbookStream(const WorksheetCells& cells, std::string_view sheetName) {
    const Extent extent = UsedRange(cells);

    // The strings are numbered before the globals are written, since the table stands there.
    SharedStrings strings;
    struct Written {
        const WorksheetCell* cell;
        std::optional<double> number;
        std::uint32_t string;
    };
    std::vector<Written> written;
    written.reserve(cells.size());
    for (const WorksheetCell& cell : cells) {
        std::optional<double> number = LosslessNumber(cell.text);
        written.push_back({&cell, number, number ? 0u : strings.Index(cell.text)});
    }

    RecordStream records;
    Bof(records, 0x0005);  // workbook globals
    Bytes codepage;
    codepage.U16(1200);  // UTF-16
    records.Record(kCodepage, codepage);
    Bytes window;
    window.U16(0x0168);  // position and size in twips
    window.U16(0x001E);
    window.U16(0x3C00);
    window.U16(0x2000);
    window.U16(0x0038);  // scroll bars and sheet tabs shown
    window.U16(0);       // active sheet
    window.U16(0);       // first visible tab
    window.U16(1);       // selected tabs
    window.U16(0x0258);  // tab bar width ratio
    records.Record(kWindow1, window);
    // Font 4 does not exist in the format; four fonts fill 0 to 3.
    for (int font = 0; font < 4; ++font)
        Font(records);
    for (unsigned xf = 0; xf < kStyleXfCount; ++xf)
        Xf(records, xf == 0 ? 0 : 1, true);
    Xf(records, 0, false);
    Bytes normal;
    normal.U16(0x8000);  // built-in style of XF 0
    normal.U8(0);        // Normal
    normal.U8(0xFF);
    records.Record(kStyle, normal);

    const std::size_t sheetPositionAt = records.Position() + 4;
    Bytes sheet;
    sheet.U32(0);  // the sheet's position, filled in below
    sheet.U8(0);   // visible
    sheet.U8(0);   // a worksheet
    ShortString(sheet, sheetName);
    records.Record(kBoundSheet, sheet);
    strings.Write(records);
    Eof(records);

    const std::size_t sheetPosition = records.Position();
    Bof(records, 0x0010);  // worksheet
    Bytes dimensions;
    dimensions.U32(extent.firstRow);
    dimensions.U32(extent.lastRowPlusOne);
    dimensions.U16(extent.firstColumn);
    dimensions.U16(extent.lastColumnPlusOne);
    dimensions.U16(0);
    records.Record(kDimensions, dimensions);
    for (const Written& cell : written) {
        Bytes body;
        body.U16(static_cast<unsigned>(cell.cell->row));
        body.U16(static_cast<unsigned>(cell.cell->column));
        body.U16(kCellXf);
        if (cell.number) {
            body.F64(*cell.number);
            records.Record(kNumber, body);
        } else {
            body.U32(cell.string);
            records.Record(kLabelSst, body);
        }
    }
    Bytes window2;
    window2.U16(0x06B6);  // grid lines, headings, zeros shown; the selected, active sheet
    window2.U16(0);       // top row
    window2.U16(0);       // left column
    window2.U32(0x40);    // grid line colour
    window2.U16(0);
    window2.U16(0);
    window2.U32(0);
    records.Record(kWindow2, window2);
    Eof(records);

    std::string stream = records.Take();
    for (std::size_t i = 0; i < 4; ++i)
        stream[sheetPositionAt + i] = static_cast<char>((sheetPosition >> (8 * i)) & 0xFFu);
    if (stream.size() < kMinStreamSize) stream.resize(kMinStreamSize, '\0');
    return stream;
}

std::string XlsWorkbookFile(const WorksheetCells& cells, std::string_view sheetName) {
    return Ole2CompoundFile("Workbook", Biff8WorkbookStream(cells, sheetName));
}

}  // namespace tavrelle
