#include "formats/Biff8Check.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

#include "base/ProgramError.h"
#include "formats/ExcelSheetReading.h"

namespace tavrelle {

namespace {

constexpr std::size_t kMaxRecordBody = 8224;

enum Record : unsigned {
    kBof = 0x0809,
    kEof = 0x000A,
    kFilePass = 0x002F,
    kCodepage = 0x0042,
    kDateMode = 0x0022,
    kBoundSheet = 0x0085,
    kSst = 0x00FC,
    kContinue = 0x003C,
    kFormat = 0x041E,
    kXf = 0x00E0,
    kDimensions = 0x0200,
    kNumber = 0x0203,
    kRk = 0x027E,
    kMulRk = 0x00BD,
    kLabelSst = 0x00FD,
    kLabel = 0x0204,
    kRString = 0x00D6,
    kBoolErr = 0x0205,
    kFormula = 0x0006,
    kBof2 = 0x0009,
    kBof3 = 0x0209,
    kBof4 = 0x0409,
};

[[noreturn]] void Refuse() {
    throw WorkbookUnreadable();
}

unsigned U8(std::string_view body, std::size_t at) {
    return static_cast<unsigned char>(body[at]);
}
unsigned U16(std::string_view body, std::size_t at) {
    return U8(body, at) | (U8(body, at + 1) << 8);
}
std::uint32_t U32(std::string_view body, std::size_t at) {
    return U16(body, at) | (static_cast<std::uint32_t>(U16(body, at + 2)) << 16);
}

void NeedLength(std::string_view body, std::size_t length) {
    if (body.size() < length) Refuse();
}

// An XLUnicodeString at `at` of a single record: a count of 16 (or 8) bits, flags, characters.
void CheckString(std::string_view body, std::size_t at, bool shortCount) {
    const std::size_t header = shortCount ? 2 : 3;
    NeedLength(body, at + header);
    const std::size_t count = shortCount ? U8(body, at) : U16(body, at);
    const unsigned flags = U8(body, at + header - 1);
    std::size_t extra = 0;
    std::size_t position = at + header;
    if (!shortCount && (flags & 0x08) != 0) {  // rich text runs
        NeedLength(body, position + 2);
        extra += 4 * static_cast<std::size_t>(U16(body, position));
        position += 2;
    }
    if (!shortCount && (flags & 0x04) != 0) {  // phonetic data
        NeedLength(body, position + 4);
        extra += U32(body, position);
        position += 4;
    }
    const std::size_t unit = (flags & 0x01) != 0 ? 2 : 1;
    NeedLength(body, position + count * unit + extra);
}

// The shared string table and its CONTINUE records, read as Excel defines them: a string's
// characters may go on in the next record, which then starts with their flags again.
class SharedStringCheck {
public:
    explicit SharedStringCheck(const std::vector<std::string_view>& bodies) : bodies_(bodies) {}

    std::uint32_t Count() {
        if (bodies_.empty() || bodies_[0].size() < 8) Refuse();
        const std::uint32_t unique = U32(bodies_[0], 4);
        offset_ = 8;
        for (std::uint32_t i = 0; i < unique; ++i) {
            const std::size_t count = Take(2);
            const unsigned flags = static_cast<unsigned>(Take(1));
            const std::size_t runs = (flags & 0x08) != 0 ? Take(2) : 0;
            const std::size_t phonetic = (flags & 0x04) != 0 ? Take(4) : 0;
            Characters(count, (flags & 0x01) != 0 ? 2 : 1);
            Skip(4 * runs + phonetic);
        }
        return unique;
    }

private:
    bool AtRecordEnd() const { return offset_ >= bodies_[record_].size(); }

    void NextRecord() {
        if (++record_ >= bodies_.size()) Refuse();
        offset_ = 0;
    }

    std::size_t Take(int bytes) {
        std::size_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            while (AtRecordEnd())
                NextRecord();
            value |= static_cast<std::size_t>(U8(bodies_[record_], offset_++)) << (8 * i);
        }
        return value;
    }

    void Skip(std::size_t bytes) {
        while (bytes > 0) {
            while (AtRecordEnd())
                NextRecord();
            const std::size_t step = std::min(bytes, bodies_[record_].size() - offset_);
            offset_ += step;
            bytes -= step;
        }
    }

    void Characters(std::size_t count, std::size_t unit) {
        while (count > 0) {
            if (AtRecordEnd()) {
                NextRecord();
                if (bodies_[record_].empty()) Refuse();
                unit = (U8(bodies_[record_], offset_++) & 0x01) != 0 ? 2 : 1;
                continue;
            }
            const std::size_t room = (bodies_[record_].size() - offset_) / unit;
            if (room == 0) Refuse();  // half a character at a record's end
            const std::size_t step = std::min(count, room);
            offset_ += step * unit;
            count -= step;
        }
    }

    const std::vector<std::string_view>& bodies_;
    std::size_t record_ = 0;
    std::size_t offset_ = 0;
};

struct Entry {
    std::size_t position;
    unsigned type;
    std::string_view body;
};

// The records of the stream, each within it and within the size Excel allows; the stream may
// end in padding shorter than a record header.
std::vector<Entry> SplitRecords(std::string_view stream) {
    std::vector<Entry> records;
    std::size_t at = 0;
    while (at + 4 <= stream.size()) {
        const unsigned type = U16(stream, at);
        const std::size_t length = U16(stream, at + 2);
        if (length > kMaxRecordBody) Refuse();
        if (at + 4 + length > stream.size()) Refuse();
        records.push_back({at, type, stream.substr(at + 4, length)});
        at += 4 + length;
    }
    for (; at < stream.size(); ++at)
        if (stream[at] != '\0') Refuse();
    return records;
}

// What the walk over the records has met so far.
struct Walk {
    explicit Walk(const std::vector<Entry>& all) : records(all) {}
    const std::vector<Entry>& records;
    std::size_t next = 0;  // the record after the one in hand
    int depth = 0;         // substreams open: the globals or a sheet, and a chart inside
    std::vector<std::size_t> sheetStarts;
    std::vector<std::size_t> sheetPositions;  // where the workbook says its sheets start
    int dimensions = 0;                       // of the substream in hand
    std::optional<std::uint32_t> sharedStrings;
};

void OpenSubstream(std::string_view body, Walk& walk) {
    if (U16(body, 0) != 0x0600) Refuse();
    if (walk.depth == 0) {
        if (walk.next > 1) walk.sheetStarts.push_back(walk.records[walk.next - 1].position);
        walk.dimensions = 0;
    }
    ++walk.depth;
}

void CloseSubstream(std::string_view, Walk& walk) {
    --walk.depth;
}

void RefuseRecord(std::string_view, Walk&) {
    Refuse();
}

void Encrypted(std::string_view, Walk&) {
    throw ProgramError(-2147467259, "Could not decrypt file.");
}

void CheckSheetEntry(std::string_view body, Walk& walk) {
    walk.sheetPositions.push_back(U32(body, 0));
    if (U8(body, 6) == 0 || U8(body, 7) > 1) Refuse();
    CheckString(body, 6, true);
}

// The table comes once, with the CONTINUE records that follow it.
void CheckSharedStrings(std::string_view body, Walk& walk) {
    if (walk.sharedStrings) Refuse();
    std::vector<std::string_view> bodies{body};
    while (walk.next < walk.records.size() && walk.records[walk.next].type == kContinue)
        bodies.push_back(walk.records[walk.next++].body);
    walk.sharedStrings = SharedStringCheck(bodies).Count();
}

void CheckFormat(std::string_view body, Walk&) {
    CheckString(body, 2, false);
}

void CheckDimensions(std::string_view body, Walk& walk) {
    if (walk.depth == 1 && ++walk.dimensions > 1) Refuse();
    if (U32(body, 0) > U32(body, 4) || U32(body, 4) > 65536 || U16(body, 8) > U16(body, 10) ||
        U16(body, 10) > 256)
        Refuse();
}

// Whole six-byte cells, as many as the first and last column say.
void CheckMulRk(std::string_view body, Walk&) {
    if ((body.size() - 6) % 6 != 0 ||
        U16(body, body.size() - 2) + 1 != U16(body, 2) + (body.size() - 6) / 6)
        Refuse();
}

void CheckSharedLabel(std::string_view body, Walk& walk) {
    if (!walk.sharedStrings || U32(body, 6) >= *walk.sharedStrings) Refuse();
}

void CheckLabel(std::string_view body, Walk&) {
    CheckString(body, 6, false);
}

struct RecordRule {
    unsigned type;
    std::size_t shortest;                         // body length the record needs
    void (*check)(std::string_view body, Walk&);  // null: its length is all there is
};

// Every record FreeXL reads, and what it must hold. Records of the older formats, which FreeXL
// would act on even in a BIFF8 stream (a record 0 as a second set of dimensions, for one), never
// stand in a BIFF8 stream.
constexpr RecordRule kRules[] = {
    {kBof, 8, OpenSubstream},
    {kEof, 0, CloseSubstream},
    {kFilePass, 0, Encrypted},
    {kCodepage, 2, nullptr},
    {kDateMode, 2, nullptr},
    {kBoundSheet, 8, CheckSheetEntry},
    {kSst, 0, CheckSharedStrings},
    {kFormat, 5, CheckFormat},
    {kXf, 20, nullptr},
    {kDimensions, 14, CheckDimensions},
    {kNumber, 14, nullptr},
    {kRk, 10, nullptr},
    {kMulRk, 12, CheckMulRk},
    {kLabelSst, 10, CheckSharedLabel},
    {kLabel, 9, CheckLabel},
    {kRString, 9, CheckLabel},
    {kBoolErr, 8, nullptr},
    {kFormula, 20, nullptr},
    {0x0000, 0, RefuseRecord},
    {0x0001, 0, RefuseRecord},
    {0x0002, 0, RefuseRecord},
    {0x0003, 0, RefuseRecord},
    {0x0004, 0, RefuseRecord},
    {0x0005, 0, RefuseRecord},
    {0x0007, 0, RefuseRecord},
    {0x0008, 0, RefuseRecord},
    {0x001E, 0, RefuseRecord},
    {0x0043, 0, RefuseRecord},
    {0x0206, 0, RefuseRecord},
    {0x0243, 0, RefuseRecord},
    {0x0406, 0, RefuseRecord},
    {0x0443, 0, RefuseRecord},
    {kBof2, 0, RefuseRecord},
    {kBof3, 0, RefuseRecord},
    {kBof4, 0, RefuseRecord},
};

const RecordRule* RuleFor(unsigned type) {
    const auto* rule = std::find_if(std::begin(kRules), std::end(kRules),
                                    [type](const RecordRule& r) { return r.type == type; });
    return rule == std::end(kRules) ? nullptr : rule;
}

}  // namespace

void CheckBiff8Stream(std::string_view stream) {
    const std::vector<Entry> records = SplitRecords(stream);
    if (records.empty() || records[0].type != kBof) Refuse();
    NeedLength(records[0].body, 4);
    if (U16(records[0].body, 0) != 0x0600 || U16(records[0].body, 2) != 0x0005) Refuse();

    // The substreams: the globals, then one per sheet, each from its BOF to its EOF, charts nested
    // inside sheets; between and after them only padding.
    Walk walk(records);
    while (walk.next < records.size()) {
        const Entry& record = records[walk.next++];
        if (walk.depth == 0 && record.type != kBof) {
            if (record.type != 0 || !record.body.empty()) Refuse();
            continue;
        }
        if (const RecordRule* rule = RuleFor(record.type)) {
            NeedLength(record.body, rule->shortest);
            if (rule->check) rule->check(record.body, walk);
        }
    }
    // Every substream closed, and the sheets where the workbook says they are.
    std::sort(walk.sheetPositions.begin(), walk.sheetPositions.end());
    if (walk.depth != 0 || walk.sheetPositions != walk.sheetStarts) Refuse();
}

}  // namespace tavrelle
