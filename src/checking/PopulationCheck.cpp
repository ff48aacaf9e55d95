#include "checking/PopulationCheck.h"

#include <algorithm>
#include <optional>

#include "base/Numbers.h"

namespace tavrelle {

namespace {

constexpr Int16 kSmallestMaximum = 50;
constexpr Int16 kLargestMaximum = 700;
constexpr Int16 kUsualLow = 100;
constexpr Int16 kUsualHigh = 500;

Message Box(std::string text, MessageIcon icon = MessageIcon::None) {
    return {std::move(text), "", icon, MessageButtons::Ok};
}

// The finder replaces its list on its first entry of a check and appends from then on, so a
// list nothing is added to keeps what an earlier check left.
class CellCollector {
public:
    CellCollector(std::vector<CellPosition>& cells, std::vector<Table::Bookmark>* bookmarks,
                  CountWidth width)
        : cells_(cells), bookmarks_(bookmarks), width_(width) {}

    void Add(const Table& table, int column, int row) {
        if (count_ == 0) {
            cells_.clear();
            if (bookmarks_ != nullptr) bookmarks_->clear();
        }
        cells_.push_back({Narrow16(column), Narrow16(row)});
        if (bookmarks_ != nullptr) bookmarks_->push_back(table.GetBookmark());
        count_ = NarrowCount(count_ + 1, width_);
    }
    std::int32_t Count() const { return count_; }
    const std::vector<CellPosition>& Cells() const { return cells_; }

private:
    std::vector<CellPosition>& cells_;
    std::vector<Table::Bookmark>* bookmarks_;
    CountWidth width_;
    std::int32_t count_ = 0;
};

// Rows and columns as the grid shows them: row 1 is the first sample, column 3 the first allele.
std::string LocationSection(Table& table, std::string_view heading,
                            const std::vector<CellPosition>& cells) {
    std::string text(heading);
    text += "\r\nValue\tRow\tColumn\r\n";
    for (const CellPosition& cell : cells) {
        table.MoveFirst();
        table.Move(cell.row);
        text += table.Field(cell.column) + "\t" + std::to_string(cell.row - 1) + "\t" +
                std::to_string(cell.column + 1) + "\r\n";
    }
    return text;
}

Int16 RepeatCode(const std::vector<Int16>& repeatCodes, int locus) {
    if (locus < 0 || static_cast<std::size_t>(locus) >= repeatCodes.size())
        throw ProgramError::SubscriptOutOfRange();
    Int16 code = repeatCodes[static_cast<std::size_t>(locus)];
    if (code == 0) throw ProgramError::DivisionByZero();
    return code;
}

// The maximum allele size typed, clamped to what is permitted, with a word when it is unusual;
// nothing when the text is no whole number. A size past 32 bits is no whole number to the box
// either; one past 16 bits is simply above the largest maximum. Nothing typed into the box ends
// the session.
std::optional<Int16> ReadMaximumSize(std::string_view sizeText, Prompter& prompter) {
    bool whole = false;
    try {
        whole = IsWholeNumber(sizeText);
    } catch (const ProgramError&) {
    }
    if (sizeText.empty() || !whole) {
        prompter.Show(Box("The Maximum Allele Size must be an Integer"));
        return std::nullopt;
    }
    const double typed = NumericValue(sizeText).value_or(0);
    const Int16 maximum = typed > kLargestMaximum    ? kLargestMaximum
                          : typed < kSmallestMaximum ? kSmallestMaximum
                                                     : ToInt16(typed);
    if (maximum < kUsualLow || maximum > kUsualHigh) {
        prompter.Show(
            Box("The maximum allele size is set outside normal limits.\r"
                "The range is usually " +
                std::to_string(kUsualLow) + " to " + std::to_string(kUsualHigh) + " but " +
                std::to_string(kSmallestMaximum) + " to " + std::to_string(kLargestMaximum) +
                " is permitted."));
    }
    return maximum;
}

// The samples of the population, rows 2 to the last, with the recordset on each in turn.
template <class Visit>
void ForEachSample(Table& table, Visit visit) {
    const int lastRow = Narrow16(table.RecordCount() - 1);
    table.MoveFirst();
    table.Move(1);
    for (int row = 2; row <= lastRow; ++row) {
        table.MoveNext();
        visit(row);
    }
}

// First pass: whole numbers within 1 to the maximum; so every missing allele (0) is listed.
void ListRange(Table& table, Int16 maximum, CellCollector& nonInteger, CellCollector& unexpected) {
    const int columnCount = table.ColumnCount();
    ForEachSample(table, [&](int row) {
        for (int column = 2; column <= columnCount - 2; column += 2) {
            for (int cell : {column, column + 1}) {
                const std::string& text = table.Field(cell);
                if (!IsWholeNumber(text))
                    nonInteger.Add(table, cell, row);
                else if (const Int16 value = TextToInt16(text); value > maximum || value < 1)
                    unexpected.Add(table, cell, row);
            }
        }
    });
}

// Second pass: the first sample's Allele A alone sets each locus's reference modulus; a missing
// allele never breaks the motif.
void ListMotifBreaks(Table& table, const std::vector<Int16>& repeatCodes,
                     CellCollector& inconsistent) {
    const int loci = (table.ColumnCount() - 2) / 2;
    std::vector<Int16> reference;
    table.MoveFirst();
    table.Move(2);
    for (int locus = 0; locus < loci; ++locus) {
        reference.push_back(static_cast<Int16>(TextToInt16(table.Field(2 + 2 * locus)) %
                                               RepeatCode(repeatCodes, locus)));
    }
    ForEachSample(table, [&](int row) {
        for (int locus = 0; locus < loci; ++locus) {
            const Int16 code = RepeatCode(repeatCodes, locus);
            for (int cell : {2 + 2 * locus, 3 + 2 * locus}) {
                const Int16 value = TextToInt16(table.Field(cell));
                if (value % code != reference[static_cast<std::size_t>(locus)] && value != 0)
                    inconsistent.Add(table, cell, row);
            }
        }
    });
}

}  // namespace

bool CheckStarted(CheckEnding ending) {
    return ending != CheckEnding::MotifMissing;
}

bool CheckAllowsRun(CheckEnding ending) {
    return ending == CheckEnding::Suspect || ending == CheckEnding::Clean;
}

bool CheckReadTheMotifs(CheckEnding ending) {
    return ending != CheckEnding::MotifMissing && ending != CheckEnding::InsufficientData;
}

CheckOutcome ValidatePopulation(Table& rsAlleleData, const std::vector<Int16>& repeatCodes,
                                std::string_view sizeText, CheckFlags& flags, SuspectCells& cells,
                                Prompter& prompter, CountWidth width) {
    if (std::find(repeatCodes.begin(), repeatCodes.end(), Int16{0}) != repeatCodes.end()) {
        prompter.Show(Box("Please select a Repeat Motif for all Loci"));
        flags.CheckOk = false;
        flags.CheckClean = true;
        return CheckOutcome{};
    }
    flags.CheckOk = true;
    return CheckPopulation(rsAlleleData, repeatCodes, sizeText, flags, cells, prompter, width);
}

CheckOutcome CheckPopulation(Table& rsAlleleData, const std::vector<Int16>& repeatCodes,
                             std::string_view sizeText, CheckFlags& flags, SuspectCells& cells,
                             Prompter& prompter, CountWidth width) {
    CheckOutcome outcome;
    flags.CheckClean = true;
    const std::optional<Int16> maximum = ReadMaximumSize(sizeText, prompter);
    if (!maximum) {
        outcome.ending = CheckEnding::SizeNotInteger;
        return outcome;
    }
    outcome.maximumSize = std::to_string(*maximum);

    if (rsAlleleData.RecordCount() < 6) {
        flags.AbandonRun = true;
        prompter.Show(Box("Insufficient data to perform analysis", MessageIcon::Exclamation));
        outcome.ending = CheckEnding::InsufficientData;
        return outcome;
    }

    CellCollector nonInteger(cells.NonIntegerCells, nullptr, width);
    CellCollector unexpected(cells.UnexpectedCells, &cells.UnexpectedBookmarks, width);
    CellCollector inconsistent(cells.InconsistentCells, &cells.InconsistentBookmarks, width);
    ListRange(rsAlleleData, *maximum, nonInteger, unexpected);
    if (nonInteger.Count() > 0) {
        // The modulus test needs a number in every cell.
        flags.CheckClean = false;
        prompter.Show(Box(std::to_string(nonInteger.Count()) +
                              " value(s) not positive integer.\r\nPlease correct and try again.",
                          MessageIcon::Critical));
        outcome.ending = CheckEnding::NonInteger;
        outcome.listing = LocationSection(rsAlleleData, "Non-integer values:", nonInteger.Cells());
        return outcome;
    }
    ListMotifBreaks(rsAlleleData, repeatCodes, inconsistent);

    std::string summary;
    if (unexpected.Count() > 0)
        summary +=
            std::to_string(unexpected.Count()) + " value(s) may be outside the expected range.\r\n";
    if (inconsistent.Count() > 0)
        summary +=
            std::to_string(inconsistent.Count()) + " value(s) with inconsistent modulus.\r\n";
    flags.UncheckedData = false;
    if (summary.empty()) {
        outcome.ending = CheckEnding::Clean;
        if (!flags.AnalyseInProgress) {
            prompter.Show(
                Box("No errors were found in the input data.\r\n"
                    "Click 'Analyse' or 'Next Population' to continue."));
        }
        return outcome;
    }

    outcome.ending = CheckEnding::Suspect;
    if (unexpected.Count() > 0)
        outcome.listing += LocationSection(rsAlleleData, "Unexpected values:", unexpected.Cells());
    if (inconsistent.Count() > 0)
        outcome.listing +=
            LocationSection(rsAlleleData, "Inconsistent values:", inconsistent.Cells());
    flags.CheckClean = false;
    if (!flags.AnalyseInProgress) prompter.Show(Box(summary, MessageIcon::Exclamation));
    return outcome;
}

}  // namespace tavrelle
