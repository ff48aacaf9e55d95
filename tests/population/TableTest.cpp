#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "base/ProgramError.h"
#include "population/Table.h"

namespace tavrelle {
namespace {

// Texts a cell must give back byte for byte: packed in the slot, spilled, and at the edges.
const std::vector<std::string> kEdgeTexts = {
    "",
    "0",
    "00",
    "000",
    "0000",
    "098",
    "154156",
    " ",
    "  7",
    "7  ",
    "\t",
    "a b",
    std::string("\0", 1),
    std::string{'1', '\0', '2'},
    std::string("\0\0\0\0", 4),
    "\xff\xfe\x80",
    "\xc3\xa9t\xc3\xa9 \xe6\x9c\xa8",
    "\r\n",
    "Sample no.",
    "a sample name with spaces, a comma and more than fifteen characters",
    std::string(254, 'x'),
    std::string(255, '9'),
};

Table OneColumnTable(std::size_t rows) {
    Table table;
    table.AppendColumn("Col_1");
    for (std::size_t row = 0; row < rows; ++row)
        table.AddNew();
    return table;
}

std::vector<std::string> Column(const Table& table, int column) {
    std::vector<std::string> texts;
    for (std::int64_t row = 0; row < table.RecordCount(); ++row)
        texts.push_back(table.Cell(row, column));
    return texts;
}

TEST(TableCells, EveryTextReadsBackAsWritten) {
    Table table = OneColumnTable(kEdgeTexts.size());
    for (std::size_t row = 0; row < kEdgeTexts.size(); ++row)
        table.SetCell(static_cast<std::int64_t>(row), 0, kEdgeTexts[row]);
    EXPECT_EQ(Column(table, 0), kEdgeTexts);
}

TEST(TableCells, NewCellsAreEmpty) {
    Table table = OneColumnTable(2);
    table.AppendColumn("Col_2");
    table.AddNew();
    EXPECT_EQ(Column(table, 0), std::vector<std::string>(3));
    EXPECT_EQ(Column(table, 1), std::vector<std::string>(3));
}

TEST(TableCells, OverwritingLongerShorterOrEmptyLeavesNeighboursAlone) {
    // Each row is one cell written over and over; its neighbours keep their texts.
    const std::vector<std::vector<std::string>> histories = {
        {"1", "12345", "12"},
        {"abcd", "abcdefgh", "ab"},
        {"long text here", "shorter", "", "x"},
        {std::string(255, 'a'), std::string(4, 'b'), std::string(255, 'c')},
        {"", "", "0001"},
        {"a name", "a name"},
    };
    Table table = OneColumnTable(histories.size() + 2);
    table.SetCell(0, 0, "first neighbour");
    table.SetCell(static_cast<std::int64_t>(histories.size()) + 1, 0, "last neighbour");
    std::vector<std::string> expected{"first neighbour"};
    for (std::size_t i = 0; i < histories.size(); ++i) {
        for (const std::string& text : histories[i])
            table.SetCell(static_cast<std::int64_t>(i) + 1, 0, text);
        expected.push_back(histories[i].back());
    }
    expected.push_back("last neighbour");
    EXPECT_EQ(Column(table, 0), expected);
}

TEST(TableCells, ManyRewritesKeepEveryText) {
    // Enough rewrites of long texts for the freed space to be reclaimed several times.
    constexpr std::size_t kCells = 300;
    Table table = OneColumnTable(kCells);
    std::vector<std::string> expected(kCells);
    for (std::size_t round = 0; round < 200; ++round) {
        for (std::size_t cell = round % 3; cell < kCells; cell += 1 + round % 2) {
            std::string text = std::to_string(round * kCells + cell);
            text.resize((round * 7 + cell * 13) % 256, static_cast<char>('a' + cell % 26));
            table.SetCell(static_cast<std::int64_t>(cell), 0, text);
            expected[cell] = std::move(text);
        }
    }
    EXPECT_EQ(Column(table, 0), expected);
}

TEST(TableCells, CopiesAndMovesCarryTheTexts) {
    Table table = OneColumnTable(kEdgeTexts.size());
    for (std::size_t row = 0; row < kEdgeTexts.size(); ++row)
        table.SetCell(static_cast<std::int64_t>(row), 0, kEdgeTexts[row]);

    Table copy = table;
    copy.SetCell(0, 0, "changed in the copy only");
    EXPECT_EQ(Column(table, 0), kEdgeTexts);
    EXPECT_EQ(copy.Cell(0, 0), "changed in the copy only");

    Table moved = std::move(copy);
    Table assigned;
    assigned = std::move(table);
    EXPECT_EQ(Column(assigned, 0), kEdgeTexts);
    EXPECT_EQ(moved.Cell(1, 0), kEdgeTexts[1]);
    EXPECT_EQ(moved.Cell(20, 0), kEdgeTexts[20]);
}

TEST(TableCells, DeletedRowsTakeTheirCellsAlong) {
    Table table;
    table.AppendColumn("Col_1");
    table.AppendColumn("Col_2");
    const std::vector<std::string> names = {"first sample", "2", "third sample", "4"};
    for (const std::string& name : names) {
        table.AddNew();
        table.SetField(0, name);
        table.SetField(1, name + name);
    }
    const Table::Bookmark last = table.GetBookmark();
    table.MoveFirst();
    table.Move(2);
    table.Delete();
    EXPECT_EQ(table.Field(0), "4");
    table.MoveFirst();
    table.Delete();
    EXPECT_EQ(Column(table, 0), (std::vector<std::string>{"2", "4"}));
    EXPECT_EQ(Column(table, 1), (std::vector<std::string>{"22", "44"}));
    table.SetBookmark(last);
    EXPECT_EQ(table.Position(), 1);
}

TEST(TableCells, ColumnAddedToFilledRowsIsEmptyAndKeepsTheOthers) {
    Table table = OneColumnTable(3);
    for (std::int64_t row = 0; row < 3; ++row)
        table.SetCell(row, 0, kEdgeTexts[static_cast<std::size_t>(row) * 9]);
    table.AppendColumn("Col_2");
    EXPECT_EQ(Column(table, 0),
              (std::vector<std::string>{kEdgeTexts[0], kEdgeTexts[9], kEdgeTexts[18]}));
    EXPECT_EQ(Column(table, 1), std::vector<std::string>(3));
}

TEST(TableCells, RefusalsNameTheirError) {
    struct Case {
        const char* what;
        void (*action)(Table&);
        int number;
    };
    const Case cases[] = {
        {"256 characters", [](Table& t) { t.SetCell(0, 0, std::string(256, 'x')); }, 3421},
        {"row past the end", [](Table& t) { t.SetCell(2, 0, "1"); }, 3021},
        {"negative row", [](Table& t) { (void)t.Cell(-1, 0); }, 3021},
        {"column past the end", [](Table& t) { (void)t.Cell(0, 1); }, 9},
        {"negative column", [](Table& t) { t.SetCell(0, -1, "1"); }, 9},
        {"no current row", [](Table& t) { t.MoveLast(), t.MoveNext(), (void)t.Field(0); }, 3021},
    };
    for (const Case& c : cases) {
        Table table = OneColumnTable(2);
        table.SetCell(0, 0, "kept text");
        try {
            c.action(table);
            ADD_FAILURE() << c.what << " was accepted";
        } catch (const ProgramError& error) {
            EXPECT_EQ(error.Number(), c.number) << c.what;
        }
        EXPECT_EQ(table.Cell(0, 0), "kept text") << c.what;
    }
}

}  // namespace
}  // namespace tavrelle
