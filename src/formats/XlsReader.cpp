#include "formats/XlsReader.h"

#include <freexl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <vector>

#include "base/Numbers.h"
#include "base/TemporaryFolder.h"
#include "formats/Biff8Check.h"
#include "formats/Ole2Container.h"
#include "formats/WorkbookText.h"
#include "population/FileErrors.h"
#include "population/LineInput.h"

namespace tavrelle {

namespace {

// One open workbook; FreeXL keeps every sheet's cells from the opening on.
// The largest Workbook stream read: far beyond any sheet the store can hold.
constexpr std::size_t kMaxStreamSize = std::size_t{256} << 20;
// Streams shorter than this sit in the container's small-block stream, which FreeXL reads badly.
constexpr std::size_t kMinStreamSize = 4096;

// FreeXL reads workbooks by name only: the checked copy goes to a file of its own, which is
// unlinked as soon as FreeXL has it open.
class ScratchFile {
public:
    explicit ScratchFile(const std::string& bytes) {
        std::string pattern = (TemporaryFolder() / "tavrelle-xls-XXXXXX").string();
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        const int descriptor = mkstemp(name.data());
        if (descriptor < 0) throw FileError(errno);
        path_ = name.data();
        std::size_t written = 0;
        while (written < bytes.size()) {
            const ssize_t step = write(descriptor, bytes.data() + written, bytes.size() - written);
            if (step <= 0) {
                const int error = errno;
                close(descriptor);
                throw FileError(error);
            }
            written += static_cast<std::size_t>(step);
        }
        if (close(descriptor) != 0) throw FileError(errno);
    }
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

// FreeXL trusts the container and the lengths inside the workbook, and reads past its buffers when
// they lie. So it never sees the file itself: the Workbook stream is read out with libgsf,
// checked record by record, and handed over in a fresh container written by libgsf.
std::string CheckedWorkbook(const std::string& fileLocation) {
    std::optional<std::string> stream =
        Ole2Stream(ReadWholeFile(fileLocation), "Workbook", kMaxStreamSize);
    if (!stream) throw WorkbookUnreadable();
    CheckBiff8Stream(*stream);
    if (stream->size() < kMinStreamSize) stream->resize(kMinStreamSize, '\0');
    try {
        return Ole2CompoundFile("Workbook", *stream);
    } catch (const ProgramError&) {
        throw WorkbookUnreadable();
    }
}

class XlsHandle {
public:
    explicit XlsHandle(const std::string& fileLocation) {
        ScratchFile checked(CheckedWorkbook(fileLocation));
        // The handle must be closed even when the opening fails.
        const int opened = freexl_open(checked.Path().c_str(), &handle_);
        unsigned int password = 0;
        if (opened != FREEXL_OK ||
            freexl_get_info(handle_, FREEXL_BIFF_PASSWORD, &password) != FREEXL_OK ||
            password == FREEXL_BIFF_OBFUSCATED) {
            if (handle_ != nullptr) freexl_close(handle_);
            throw WorkbookUnreadable();
        }
    }
    ~XlsHandle() {
        if (handle_ != nullptr) freexl_close(handle_);
    }
    XlsHandle(const XlsHandle&) = delete;
    XlsHandle& operator=(const XlsHandle&) = delete;

    const void* Get() const { return handle_; }

    // FreeXL reads cells of one sheet at a time.
    void Select(unsigned short sheet) {
        if (active_ == sheet) return;
        if (freexl_select_active_worksheet(handle_, sheet) != FREEXL_OK)
            throw ProgramError(3021, "The sheet could not be read.");
        active_ = sheet;
    }

private:
    const void* handle_ = nullptr;
    int active_ = -1;
};

class XlsSheet : public ExcelSheet {
public:
    XlsSheet(std::shared_ptr<XlsHandle> handle, unsigned short sheet, std::int64_t rows, int fields)
        : handle_(std::move(handle)), sheet_(sheet), rows_(rows), fields_(fields) {}

    std::int64_t RecordCount() const override { return rows_; }
    int FieldCount() const override { return fields_; }

    std::optional<std::string> Field(std::int64_t row, int field) const override {
        if (row < 0 || row >= rows_ || field < 0 || field >= fields_)
            throw ProgramError::NoCurrentRecord();
        handle_->Select(sheet_);
        FreeXL_CellValue cell{};
        if (freexl_get_cell_value(handle_->Get(), static_cast<unsigned int>(row),
                                  static_cast<unsigned short>(field), &cell) != FREEXL_OK)
            throw ProgramError(3021, "The cell could not be read.");
        switch (cell.type) {
            case FREEXL_CELL_INT:
                return std::to_string(cell.value.int_value);
            case FREEXL_CELL_DOUBLE:
                // Whole numbers may come back as doubles: they read as integers.
                return NumberCellText(cell.value.double_value);
            case FREEXL_CELL_TEXT:
            case FREEXL_CELL_SST_TEXT:
            case FREEXL_CELL_DATE:
            case FREEXL_CELL_DATETIME:
            case FREEXL_CELL_TIME:
                if (cell.value.text_value == nullptr) return std::nullopt;
                return std::string(cell.value.text_value);
            default:
                return std::nullopt;
        }
    }

private:
    std::shared_ptr<XlsHandle> handle_;
    unsigned short sheet_;
    std::int64_t rows_;
    int fields_;
};

class XlsWorkbook : public ExcelWorkbook {
public:
    explicit XlsWorkbook(const std::string& fileLocation)
        : handle_(std::make_shared<XlsHandle>(fileLocation)) {}

    std::vector<std::string> SheetNames() const override {
        std::vector<std::string> names;
        unsigned int count = 0;
        if (freexl_get_info(handle_->Get(), FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK)
            return names;
        for (unsigned int index = 0; index < count && index <= 0xFFFF; ++index) {
            const char* sheetName = nullptr;
            if (freexl_get_worksheet_name(handle_->Get(), static_cast<unsigned short>(index),
                                          &sheetName) == FREEXL_OK &&
                sheetName != nullptr)
                names.emplace_back(sheetName);
        }
        return names;
    }

    std::unique_ptr<ExcelSheet> OpenSheet(const std::string& name) override {
        unsigned int count = 0;
        if (freexl_get_info(handle_->Get(), FREEXL_BIFF_SHEET_COUNT, &count) != FREEXL_OK)
            count = 0;
        const std::string wanted = UpperCase(name);
        for (unsigned int index = 0; index < count && index <= 0xFFFF; ++index) {
            const auto sheet = static_cast<unsigned short>(index);
            const char* sheetName = nullptr;
            if (freexl_get_worksheet_name(handle_->Get(), sheet, &sheetName) != FREEXL_OK ||
                sheetName == nullptr || UpperCase(sheetName) != wanted)
                continue;
            handle_->Select(sheet);
            unsigned int rows = 0;
            unsigned short columns = 0;
            if (freexl_worksheet_dimensions(handle_->Get(), &rows, &columns) != FREEXL_OK)
                throw ProgramError(3021, "The sheet could not be read.");
            return std::make_unique<XlsSheet>(handle_, sheet, rows, columns);
        }
        return nullptr;
    }

private:
    std::shared_ptr<XlsHandle> handle_;
};

}  // namespace

std::unique_ptr<ExcelWorkbook> OpenXlsWorkbook(const std::string& fileLocation) {
    return std::make_unique<XlsWorkbook>(fileLocation);
}

std::unique_ptr<ExcelWorkbook> XlsSheetReader::OpenWorkbook(const std::string& fileLocation) {
    return OpenXlsWorkbook(fileLocation);
}

}  // namespace tavrelle
