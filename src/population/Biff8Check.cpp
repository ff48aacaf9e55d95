#include "population/Biff8Check.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/ProgramError.h"
#include "population/ExcelSheetReading.h"

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

}  // namespace

void CheckBiff8Stream(std::string_view stream) {
    struct Entry {
        std::size_t position;
        unsigned type;
        std::string_view body;
    };
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
    // The stream may end in padding shorter than a record header.
    for (; at < stream.size(); ++at)
        if (stream[at] != '\0') Refuse();

    if (records.empty() || records[0].type != kBof) Refuse();
    NeedLength(records[0].body, 4);
    if (U16(records[0].body, 0) != 0x0600 || U16(records[0].body, 2) != 0x0005) Refuse();

    // The substreams: the globals, then one per sheet, each from its BOF to its EOF, charts nested
    // inside sheets; between and after them only padding.
    int depth = 0;
    std::vector<std::size_t> sheetStarts;
    std::vector<std::size_t> sheetPositions;
    int dimensions = 0;
    std::uint32_t sharedStrings = 0;
    bool sharedStringsSeen = false;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::string_view body = records[i].body;
        if (depth == 0 && records[i].type != kBof) {
            if (records[i].type != 0 || !body.empty()) Refuse();
            continue;
        }
        switch (records[i].type) {
            case kBof:
                NeedLength(body, 8);
                if (U16(body, 0) != 0x0600) Refuse();
                if (depth == 0 && i > 0) sheetStarts.push_back(records[i].position);
                if (depth == 0) dimensions = 0;
                ++depth;
                break;
            case kEof:
                --depth;
                break;
            // Records of the older formats, which FreeXL would act on even in a BIFF8 stream (a
            // record 0 as a second set of dimensions, for one), never stand in a BIFF8 stream.
            case 0x0000:
            case 0x0001:
            case 0x0002:
            case 0x0003:
            case 0x0004:
            case 0x0005:
            case 0x0007:
            case 0x0008:
            case 0x001E:
            case 0x0043:
            case 0x0206:
            case 0x0243:
            case 0x0406:
            case 0x0443:
            case kBof2:
            case kBof3:
            case kBof4:
                Refuse();
            case kFilePass:
                throw ProgramError(-2147467259, "Could not decrypt file.");
            case kCodepage:
            case kDateMode:
                NeedLength(body, 2);
                break;
            case kBoundSheet:
                NeedLength(body, 8);
                sheetPositions.push_back(U32(body, 0));
                if (U8(body, 6) == 0 || U8(body, 7) > 1) Refuse();
                CheckString(body, 6, true);
                break;
            case kSst: {
                if (sharedStringsSeen) Refuse();
                sharedStringsSeen = true;
                std::vector<std::string_view> bodies{body};
                while (i + 1 < records.size() && records[i + 1].type == kContinue)
                    bodies.push_back(records[++i].body);
                sharedStrings = SharedStringCheck(bodies).Count();
                break;
            }
            case kFormat:
                NeedLength(body, 5);
                CheckString(body, 2, false);
                break;
            case kXf:
                NeedLength(body, 20);
                break;
            case kDimensions:
                NeedLength(body, 14);
                if (depth == 1 && ++dimensions > 1) Refuse();
                if (U32(body, 0) > U32(body, 4) || U32(body, 4) > 65536 ||
                    U16(body, 8) > U16(body, 10) || U16(body, 10) > 256)
                    Refuse();
                break;
            case kNumber:
                NeedLength(body, 14);
                break;
            case kRk:
                NeedLength(body, 10);
                break;
            case kMulRk:
                NeedLength(body, 12);
                if ((body.size() - 6) % 6 != 0 ||
                    U16(body, body.size() - 2) + 1 != U16(body, 2) + (body.size() - 6) / 6)
                    Refuse();
                break;
            case kLabelSst:
                NeedLength(body, 10);
                if (!sharedStringsSeen || U32(body, 6) >= sharedStrings) Refuse();
                break;
            case kLabel:
            case kRString:
                NeedLength(body, 9);
                CheckString(body, 6, false);
                break;
            case kBoolErr:
                NeedLength(body, 8);
                break;
            case kFormula:
                NeedLength(body, 20);
                break;
            default:
                break;
        }
    }
    // Every substream closed, and the sheets where the workbook says they are.
    std::sort(sheetPositions.begin(), sheetPositions.end());
    if (depth != 0 || sheetPositions != sheetStarts) Refuse();
}

}  // namespace tavrelle
