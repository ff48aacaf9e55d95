#include "formats/Ole2Container.h"

#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-memory.h>
#include <gsf/gsf-input.h>
#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-memory.h>
#include <gsf/gsf-output.h>
#include <gsf/gsf-utils.h>

#include <cstdint>
#include <memory>
#include <mutex>

#include "base/ProgramError.h"

namespace tavrelle {

namespace {

// The class id of an Excel 97-2003 workbook, {00020820-0000-0000-C000-000000000046}, in the
// byte order of the directory entry.
constexpr guint8 kExcelClassId[16] = {0x20, 0x08, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00,
                                      0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46};

// GObject handles released in any case; the library's cast macros are C casts, so the
// conversions between its types are spelled out here.
template <typename T>
struct Unref {
    void operator()(T* object) const { g_object_unref(object); }
};
template <typename T>
using GsfHandle = std::unique_ptr<T, Unref<T>>;

GsfOutput* AsOutput(GsfOutfile* outfile) {
    return reinterpret_cast<GsfOutput*>(outfile);
}

void Silent(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

void InitialiseLibrary() {
    static std::once_flag initialised;
    std::call_once(initialised, [] {
        gsf_init();
        // A damaged container is reported by the reader's result; the library's own remarks on it
        // would only clutter the terminal.
        const auto levels =
            static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING |
                                        G_LOG_LEVEL_MESSAGE | G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG);
        for (const char* domain : {"libgsf", "libgsf:msole"})
            g_log_set_handler(domain, levels, Silent, nullptr);
    });
}

ProgramError ContainerError(GsfOutput* output) {
    const GError* error = gsf_output_error(output);
    return ProgramError(1004, error != nullptr && error->message != nullptr
                                  ? error->message
                                  : "The workbook could not be written.");
}

}  // namespace

std::string Ole2CompoundFile(std::string_view streamName, std::string_view stream) {
    InitialiseLibrary();
    GsfHandle<GsfOutput> memory(gsf_output_memory_new());
    GsfHandle<GsfOutfile> container(gsf_outfile_msole_new(memory.get()));
    if (!container) throw ContainerError(memory.get());
    gsf_outfile_msole_set_class_id(reinterpret_cast<GsfOutfileMSOle*>(container.get()),
                                   kExcelClassId);
    {
        GsfHandle<GsfOutput> child(
            gsf_outfile_new_child(container.get(), std::string(streamName).c_str(), FALSE));
        if (!child) throw ContainerError(AsOutput(container.get()));
        if (!gsf_output_write(child.get(), stream.size(),
                              reinterpret_cast<const guint8*>(stream.data())) ||
            !gsf_output_close(child.get()))
            throw ContainerError(child.get());
    }
    if (!gsf_output_close(AsOutput(container.get())))
        throw ContainerError(AsOutput(container.get()));
    container.reset();

    const gsf_off_t size = gsf_output_size(memory.get());
    const guint8* bytes =
        gsf_output_memory_get_bytes(reinterpret_cast<GsfOutputMemory*>(memory.get()));
    if (size < 0 || (size > 0 && bytes == nullptr)) throw ContainerError(memory.get());
    std::string file(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    return file;
}

std::optional<std::string> Ole2Stream(const std::string& file, std::string_view streamName,
                                      std::size_t maxSize) {
    InitialiseLibrary();
    GsfHandle<GsfInput> memory(gsf_input_memory_new(reinterpret_cast<const guint8*>(file.data()),
                                                    static_cast<gsf_off_t>(file.size()), FALSE));
    if (!memory) return std::nullopt;
    GError* error = nullptr;
    GsfHandle<GsfInfile> container(gsf_infile_msole_new(memory.get(), &error));
    if (error != nullptr) g_error_free(error);
    if (!container) return std::nullopt;
    GsfHandle<GsfInput> child(
        gsf_infile_child_by_name(container.get(), std::string(streamName).c_str()));
    if (!child) return std::nullopt;
    const gsf_off_t size = gsf_input_size(child.get());
    if (size < 0 || static_cast<std::uint64_t>(size) > maxSize) return std::nullopt;
    std::string stream(static_cast<std::size_t>(size), '\0');
    if (size > 0 && gsf_input_read(child.get(), stream.size(),
                                   reinterpret_cast<guint8*>(stream.data())) == nullptr)
        return std::nullopt;
    return stream;
}

}  // namespace tavrelle
