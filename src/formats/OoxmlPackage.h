#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tavrelle {

// What a part's XML tells its reader, element by element. Names come without their namespace
// prefix or URI, since producers differ in both.
class XmlHandler {
public:
    virtual ~XmlHandler() = default;
    // attributes: name and value pairs, ending with a null name, as the parser hands them over;
    // read them with XmlAttribute.
    virtual void Start(std::string_view name, const char** attributes) = 0;
    virtual void End(std::string_view name) = 0;
    virtual void Text(std::string_view text) = 0;
};

// The value of the attribute whose name, without namespace, is localName.
std::optional<std::string_view> XmlAttribute(const char** attributes, std::string_view localName);

// The zip package of an Office Open XML file, held in memory. Parts are found by name with case
// ignored, as the package rules have it.
class OoxmlPackage {
public:
    // Throws ProgramError when the bytes are no zip archive.
    explicit OoxmlPackage(std::string bytes);
    ~OoxmlPackage();
    OoxmlPackage(const OoxmlPackage&) = delete;
    OoxmlPackage& operator=(const OoxmlPackage&) = delete;

    bool HasPart(const std::string& name) const;
    // Streams the part through the XML parser into the handler. A missing or damaged part, XML
    // that is not well formed, a document type declaration (never in a package, and the way to
    // entity expansion) or a part larger than kMaxPartBytes throws ProgramError; so does any
    // exception the handler throws, which comes out here.
    void ParsePart(const std::string& name, XmlHandler& handler) const;

    static constexpr std::size_t kMaxPartBytes = std::size_t{256} << 20;

private:
    struct Archive;
    std::string bytes_;
    std::unique_ptr<Archive> archive_;
};

// A relationship's target as a part name: absolute targets lose their "/", relative ones are
// taken from the folder of the part that names them, with "." and ".." resolved.
std::string ResolvePartName(std::string_view sourcePart, std::string_view target);

}  // namespace tavrelle
