// libFuzzer target: the XML of an .xlsx package, mutated as text. The input holds the workbook,
// the shared strings and the sheet, parted by "|||"; they are packed as stored (uncompressed)
// zip entries, so that mutations reach the XML reader instead of dying in the inflater.
#include <zlib.h>

#include <string_view>
#include <vector>

#include "FuzzDataFile.h"

namespace {

void Le(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>((value >> (8 * i)) & 0xFFu);
}

// A zip archive of stored entries: local headers, data, the central directory and its end.
std::string StoredZip(const std::vector<std::pair<std::string, std::string>>& entries) {
    std::string zip;
    std::string directory;
    for (const auto& [name, data] : entries) {
        const auto crc = static_cast<std::uint32_t>(
            crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
        const auto offset = static_cast<std::uint32_t>(zip.size());
        const auto size = static_cast<std::uint32_t>(data.size());
        const auto nameSize = static_cast<std::uint32_t>(name.size());
        Le(zip, 0x04034b50, 4);
        Le(zip, 20, 2);
        Le(zip, 0, 2);
        Le(zip, 0, 2);  // stored
        Le(zip, 0, 4);  // time and date
        Le(zip, crc, 4);
        Le(zip, size, 4);
        Le(zip, size, 4);
        Le(zip, nameSize, 2);
        Le(zip, 0, 2);
        zip += name;
        zip += data;
        Le(directory, 0x02014b50, 4);
        Le(directory, 20, 2);
        Le(directory, 20, 2);
        Le(directory, 0, 2);
        Le(directory, 0, 2);
        Le(directory, 0, 4);
        Le(directory, crc, 4);
        Le(directory, size, 4);
        Le(directory, size, 4);
        Le(directory, nameSize, 2);
        Le(directory, 0, 2);
        Le(directory, 0, 2);
        Le(directory, 0, 2);
        Le(directory, 0, 2);
        Le(directory, 0, 4);
        Le(directory, offset, 4);
        directory += name;
    }
    const auto directoryOffset = static_cast<std::uint32_t>(zip.size());
    zip += directory;
    Le(zip, 0x06054b50, 4);
    Le(zip, 0, 2);
    Le(zip, 0, 2);
    Le(zip, static_cast<std::uint32_t>(entries.size()), 2);
    Le(zip, static_cast<std::uint32_t>(entries.size()), 2);
    Le(zip, static_cast<std::uint32_t>(directory.size()), 4);
    Le(zip, directoryOffset, 4);
    Le(zip, 0, 2);
    return zip;
}

const char* const kPackageRelationships =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
    "relationships/officeDocument\" Target=\"xl/workbook.xml\"/></Relationships>";
const char* const kWorkbookRelationships =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
    "relationships/worksheet\" Target=\"worksheets/sheet1.xml\"/>"
    "<Relationship Id=\"rId2\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
    "relationships/sharedStrings\" Target=\"sharedStrings.xml\"/></Relationships>";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> parts;
    for (std::size_t start = 0;;) {
        std::size_t end = input.find("|||", start);
        parts.emplace_back(input.substr(start, end == std::string_view::npos ? end : end - start));
        if (end == std::string_view::npos || parts.size() == 3) break;
        start = end + 3;
    }
    parts.resize(3);
    std::string zip = StoredZip({{"_rels/.rels", kPackageRelationships},
                                 {"xl/workbook.xml", parts[0]},
                                 {"xl/_rels/workbook.xml.rels", kWorkbookRelationships},
                                 {"xl/sharedStrings.xml", parts[1]},
                                 {"xl/worksheets/sheet1.xml", parts[2]}});
    return tavrelle::fuzz::LoadDataFile(reinterpret_cast<const std::uint8_t*>(zip.data()),
                                        zip.size(), ".xlsx");
}
