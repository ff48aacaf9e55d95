#include "formats/OoxmlPackage.h"

#include <expat.h>
#include <zip.h>

#include <array>
#include <exception>
#include <vector>

#include "base/ProgramError.h"

namespace tavrelle {

namespace {

// Namespaced names arrive as URI, this separator and the local name.
constexpr char kNamespaceSeparator = '\x01';

std::string_view LocalName(const char* name) {
    std::string_view full(name);
    std::size_t separator = full.rfind(kNamespaceSeparator);
    return separator == std::string_view::npos ? full : full.substr(separator + 1);
}

ProgramError PartError(const std::string& name, const std::string& what) {
    return ProgramError(3021, "The workbook part " + name + " " + what + ".");
}

// Carries the handler through the parser's C callbacks; an exception is kept and the parse
// stopped, since it must not cross the library's frames.
struct ParseState {
    XML_Parser parser;
    XmlHandler& handler;
    std::exception_ptr failure;
    bool doctype = false;

    template <typename Call>
    void Guarded(Call call) {
        if (failure) return;
        try {
            call();
        } catch (...) {
            failure = std::current_exception();
            XML_StopParser(parser, XML_FALSE);
        }
    }
};

void XMLCALL OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
    auto* state = static_cast<ParseState*>(data);
    state->Guarded([&] { state->handler.Start(LocalName(name), attributes); });
}

void XMLCALL OnEnd(void* data, const XML_Char* name) {
    auto* state = static_cast<ParseState*>(data);
    state->Guarded([&] { state->handler.End(LocalName(name)); });
}

void XMLCALL OnText(void* data, const XML_Char* text, int length) {
    auto* state = static_cast<ParseState*>(data);
    state->Guarded(
        [&] { state->handler.Text(std::string_view(text, static_cast<std::size_t>(length))); });
}

void XMLCALL OnDoctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    auto* state = static_cast<ParseState*>(data);
    state->doctype = true;
    XML_StopParser(state->parser, XML_FALSE);
}

struct ParserFree {
    void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

struct FileClose {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

}  // namespace

std::optional<std::string_view> XmlAttribute(const char** attributes, std::string_view localName) {
    for (const char** attribute = attributes; attribute != nullptr && *attribute != nullptr;
         attribute += 2) {
        if (LocalName(attribute[0]) == localName) return std::string_view(attribute[1]);
    }
    return std::nullopt;
}

struct OoxmlPackage::Archive {
    zip_t* zip = nullptr;
    ~Archive() {
        if (zip != nullptr) zip_discard(zip);
    }
};

OoxmlPackage::OoxmlPackage(std::string bytes)
    : bytes_(std::move(bytes)), archive_(std::make_unique<Archive>()) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes_.data(), bytes_.size(), 0, &error);
    if (source == nullptr) {
        zip_error_fini(&error);
        throw ProgramError(3021, "The workbook is no zip archive.");
    }
    archive_->zip = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (archive_->zip == nullptr) {
        zip_source_free(source);
        zip_error_fini(&error);
        throw ProgramError(3021, "The workbook is no zip archive.");
    }
    zip_error_fini(&error);
}

OoxmlPackage::~OoxmlPackage() = default;

bool OoxmlPackage::HasPart(const std::string& name) const {
    return zip_name_locate(archive_->zip, name.c_str(), ZIP_FL_NOCASE) >= 0;
}

void OoxmlPackage::ParsePart(const std::string& name, XmlHandler& handler) const {
    const zip_int64_t index = zip_name_locate(archive_->zip, name.c_str(), ZIP_FL_NOCASE);
    if (index < 0) throw PartError(name, "is missing");
    std::unique_ptr<zip_file_t, FileClose> file(
        zip_fopen_index(archive_->zip, static_cast<zip_uint64_t>(index), 0));
    if (!file) throw PartError(name, "cannot be opened");

    std::unique_ptr<XML_ParserStruct, ParserFree> parser(
        XML_ParserCreateNS(nullptr, kNamespaceSeparator));
    if (!parser) throw std::bad_alloc();
    ParseState state{parser.get(), handler, nullptr};
    XML_SetUserData(parser.get(), &state);
    XML_SetElementHandler(parser.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser.get(), OnText);
    XML_SetStartDoctypeDeclHandler(parser.get(), OnDoctype);

    auto check = [&](XML_Status status) {
        if (state.failure) std::rethrow_exception(state.failure);
        if (state.doctype) throw PartError(name, "holds a document type declaration");
        if (status != XML_STATUS_OK)
            throw PartError(name, std::string("is not well-formed XML: ") +
                                      XML_ErrorString(XML_GetErrorCode(parser.get())));
    };

    std::array<char, 65536> buffer{};
    std::size_t total = 0;
    for (;;) {
        const zip_int64_t read = zip_fread(file.get(), buffer.data(), buffer.size());
        if (read < 0) throw PartError(name, "is damaged");
        if (read == 0) break;
        total += static_cast<std::size_t>(read);
        if (total > kMaxPartBytes) throw PartError(name, "is too large");
        check(XML_Parse(parser.get(), buffer.data(), static_cast<int>(read), XML_FALSE));
    }
    check(XML_Parse(parser.get(), buffer.data(), 0, XML_TRUE));
}

std::string ResolvePartName(std::string_view sourcePart, std::string_view target) {
    std::string path;
    if (!target.empty() && target.front() == '/') {
        path = std::string(target.substr(1));
    } else {
        std::size_t slash = sourcePart.rfind('/');
        path = slash == std::string_view::npos ? std::string()
                                               : std::string(sourcePart.substr(0, slash + 1));
        path += target;
    }
    std::vector<std::string> segments;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t slash = path.find('/', start);
        std::string segment =
            path.substr(start, slash == std::string::npos ? std::string::npos : slash - start);
        if (segment == "..") {
            if (!segments.empty()) segments.pop_back();
        } else if (!segment.empty() && segment != ".") {
            segments.push_back(segment);
        }
        if (slash == std::string::npos) break;
        start = slash + 1;
    }
    std::string resolved;
    for (const std::string& segment : segments) {
        if (!resolved.empty()) resolved += '/';
        resolved += segment;
    }
    return resolved;
}

}  // namespace tavrelle
