#include "population/FileKind.h"

#include "base/Numbers.h"

namespace tavrelle {

FileKind KindOfFile(std::string_view fileName) {
    const std::string upper = UpperCase(fileName);
    if (upper.ends_with(".XLSX")) return FileKind::Xlsx;
    if (upper.ends_with("XLS")) return FileKind::Xls;
    return FileKind::Genepop;
}

}  // namespace tavrelle
