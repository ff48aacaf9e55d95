#pragma once

#include <string>

namespace tavrelle {

// Text escaped for HTML and XML.
std::string EscapeXml(const std::string& text);

}  // namespace tavrelle
