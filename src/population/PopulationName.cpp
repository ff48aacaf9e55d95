#include "population/PopulationName.h"

#include <string_view>

#include "base/Numbers.h"

namespace tavrelle {

namespace {

std::string CaptionFromCell(std::string_view cell) {
    std::string_view trimmed = TrimBlanks(cell);
    std::size_t nameStart = cell.find_first_not_of(' ');
    if (nameStart == std::string_view::npos) return {};
    std::size_t blank = cell.find(' ', nameStart);
    if (blank == std::string_view::npos) return std::string(trimmed);
    return std::string(trimmed.substr(0, blank));
}

}  // namespace

std::string GridCaptionName(const Table& rsAlleleData) {
    return CaptionFromCell(rsAlleleData.Cell(2, 1));
}

std::string ShowPopulationName(Table& rsAlleleData) {
    rsAlleleData.MoveFirst();
    rsAlleleData.Move(2);
    std::string name = CaptionFromCell(rsAlleleData.Field(1));
    rsAlleleData.MovePrevious();
    rsAlleleData.SetField(1, name);
    return name;
}

}  // namespace tavrelle
