#pragma once

#include <QString>
#include <string>

namespace tavrelle {

// The program's texts break lines with CR LF, and a few with a lone CR; text boxes take "\n".
inline QString ShownText(const std::string& text) {
    return QString::fromStdString(text).replace("\r\n", "\n").replace('\r', '\n');
}

}  // namespace tavrelle
