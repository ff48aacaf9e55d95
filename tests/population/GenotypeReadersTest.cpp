// The text readers and writers: the same genotypes back from every format, each refusal located,
// the format told from the bytes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../support/SimulatedGenepop.h"
#include "population/DataFormat.h"
#include "population/GenalexTable.h"
#include "population/GenepopText.h"
#include "population/StructureText.h"
#include "population/TidyGenotypes.h"

namespace tavrelle {
namespace {

GenotypeData Simulated() {
    GenotypeRead read = ReadGenepopText(testing::SimulatedGenepop({12, 9, 7}), "sim.gen");
    EXPECT_TRUE(read.Ok()) << read.ProblemText();
    return read.data;
}

// What a format without titles or population names keeps: the rest.
GenotypeData Untitled(GenotypeData data, bool keepsPopulationNames) {
    data.title.clear();
    const std::vector<std::string> labels = PopulationLabels(data);
    for (std::size_t p = 0; p < data.populations.size(); ++p)
        data.populations[p].name = keepsPopulationNames ? labels[p] : "";
    return data;
}

std::string FirstProblem(const GenotypeRead& read) {
    return read.problems.empty() ? "" : LocatedText(read.file, read.problems.front());
}

TEST(GenotypeReaders, EveryFormatGivesBackTheGenotypesItWasGiven) {
    const GenotypeData data = Simulated();
    ASSERT_EQ(data.populations.size(), 3u);
    ASSERT_EQ(data.loci.size(), 3u);
    GenotypeRead refusal;

    GenotypeRead genepop = ReadGenotypeText(GenepopText(data, refusal), "back.gen");
    EXPECT_EQ(genepop.data, data);

    // GenAlEx keeps the title and names every population.
    GenotypeRead genalex = ReadGenotypeText(GenalexCsv(data), "back.csv");
    GenotypeData labelled = Untitled(data, true);
    labelled.title = data.title;
    EXPECT_EQ(genalex.data, labelled) << genalex.ProblemText();

    GenotypeRead tidy = ReadGenotypeText(TidyCsv(data), "back.csv");
    EXPECT_EQ(Untitled(tidy.data, true), Untitled(data, true)) << tidy.ProblemText();

    // STRUCTURE numbers its populations.
    GenotypeRead structure = ReadGenotypeText(StructureText(data, refusal), "back.str");
    ASSERT_TRUE(structure.Ok()) << structure.ProblemText();
    GenotypeData numbered = Untitled(data, false);
    for (std::size_t p = 0; p < numbered.populations.size(); ++p)
        numbered.populations[p].name = std::to_string(p + 1);
    EXPECT_EQ(structure.data, numbered);
    EXPECT_TRUE(refusal.Ok()) << refusal.ProblemText();

    // Back to Genepop from any of them gives the same file but for the title.
    GenotypeData titled = structure.data;
    titled.title = data.title;
    for (GenotypePopulation& population : titled.populations)
        population.name.clear();
    EXPECT_EQ(GenepopText(titled, refusal), GenepopText(data, refusal));
}

// Populations without names get labels a format that groups by name cannot merge, even where a
// made-up label meets another population's own.
TEST(GenotypeReaders, PopulationLabelsAreUnique) {
    struct Case {
        std::vector<std::pair<std::string, std::string>> populations;  // name, first sample
        std::vector<std::string> labels;
    };
    const std::vector<Case> cases = {
        {{{"", "ab 1"}, {"", "cd"}}, {"ab", "cd"}},
        {{{"", "p"}, {"", "p"}}, {"p_1", "p_2"}},
        {{{"", "p"}, {"", "p"}, {"", "p_2"}}, {"p_1", "p_2", "p_2_3"}},
        {{{"", "p_2"}, {"", "p"}, {"", "p"}}, {"p_2", "p_2_2", "p_3"}},
        {{{"", "p"}, {"", "p"}, {"p_2", "x"}}, {"p_1", "p_2_2", "p_2"}},
        {{{"", ""}, {"Pop2", "x"}}, {"Pop1", "Pop2"}},
        {{{"", ""}, {"Pop1", "x"}}, {"Pop1_1", "Pop1"}},
    };
    for (const Case& c : cases) {
        GenotypeData data;
        for (const auto& [name, sample] : c.populations) {
            GenotypePopulation population{.name = name, .samples = {}};
            if (!sample.empty()) population.samples.push_back({.name = sample, .genotypes = {}});
            data.populations.push_back(population);
        }
        EXPECT_EQ(PopulationLabels(data), c.labels) << c.labels.back();
    }
}

// A Genepop file's first bytes may be a byte order mark, which the reader drops: a title that
// starts with one must keep it.
TEST(GenotypeReaders, ATitleStartingWithAByteOrderMarkKeepsIt) {
    for (const char* title : {"\xEF\xBB\xBF", "\xEF\xBB\xBFSurvey", "Survey"}) {
        GenotypeData data = Simulated();
        data.title = title;
        GenotypeRead refusal;
        EXPECT_EQ(ReadGenepopText(GenepopText(data, refusal), "t.gen").data, data) << title;
    }
}

TEST(GenotypeReaders, TwoDigitGenepopIsReadAsItsNumbers) {
    GenotypeRead read = ReadGenepopText(
        "Two digits\nA, B\nPOP\nx1 , 0311 0000\nx2 ,\t0510 0102\npop\ny1 , 0903 0001\n", "t.gen");
    ASSERT_TRUE(read.Ok()) << read.ProblemText();
    EXPECT_EQ(GenepopAlleleDigits("t\nA\nPop\nx , 0311\n"), 2);
    EXPECT_EQ(GenepopAlleleDigits("t\nA\nPop\nx , 100102\n"), 3);
    ASSERT_EQ(read.data.populations.size(), 2u);
    EXPECT_EQ(read.data.loci, (std::vector<std::string>{"A", "B"}));
    const GenotypeSample& x1 = read.data.populations[0].samples[0];
    EXPECT_EQ(x1.genotypes, (std::vector<AllelePair>{{3, 11}, {0, 0}}));
    EXPECT_EQ(read.data.populations[1].samples[0].genotypes,
              (std::vector<AllelePair>{{9, 3}, {0, 1}}));
}

struct Refusal {
    const char* what;
    std::string text;
    FormatChoice format;
    std::string located;  // the first problem
};

TEST(GenotypeReaders, MalformedFilesAreRefusedWhereTheyGoWrong) {
    using R = StructureForm::Rows;
    using C = StructureForm::PopulationColumn;
    const FormatChoice any;
    const std::string head = "T\nL1\nL2\nPop\n";
    const std::vector<Refusal> cases = {
        {"seven digits", head + "a , 182208 100100\nb , 1822088 100100\n", any,
         "f:6: sample 'b', locus 'L1': expected 4 or 6 digits, got '1822088'"},
        {"five digits", head + "a , 12012 100100\n", any,
         "f:5: sample 'a', locus 'L1': expected 4 or 6 digits, got '12012'"},
        {"letters", head + "a , 10010x 100100\n", any,
         "f:5: sample 'a', locus 'L1': expected 4 or 6 digits, got '10010x'"},
        {"a genotype too many", head + "a , 100100 100100 100100\n", any,
         "f:5: sample 'a': expected 2 genotypes, got 3"},
        {"a genotype missing", head + "a , 100100\n", any,
         "f:5: sample 'a': expected 2 genotypes, got 1"},
        {"mixed widths", head + "a , 100100 100100\nb , 1010 1010\n", any,
         "f:6: sample 'b', locus 'L1': expected 6 digits (3 per allele, as from line 5), got "
         "'1010': a file uses one width throughout"},
        {"an empty population", head + "a , 100100 100100\nPop\nPop\nb , 100100 100100\n", any,
         "f:6: population 2 has no samples"},
        {"no comma", head + "a 100100 100100\n", any,
         "f:5: expected 'name , genotypes' or 'Pop', got 'a 100100 100100'"},
        {"no Pop", "T\nL1\nL2\n", FormatChoice{DataFormat::Genepop, {}},
         "f:3: expected a line 'Pop' after the locus names, got the end of the file"},
        {"GenAlEx letters", "2,2,1,2\nt,,,P\nInd,Pop,A,,B,\na,P,100,1o2,0,0\nb,P,1,2,3,4\n", any,
         "f:4: sample 'a', locus 'A': expected an allele size (a whole number) or 0, got '1o2'"},
        {"GenAlEx extra column", "1,1,1,1\nt,,,P\nInd,Pop,A,\na,P,100,102,7\n", any,
         "f:4: sample 'a': expected 1 loci, got a value after the last: '7'"},
        {"GenAlEx population apart", "1,3,2,2,1\nt,,,P,Q\nInd,Pop,A,\na,P,1,2\nb,Q,1,2\nc,P,1,2\n",
         any,
         "f:6: sample 'c': population 'P' comes back after another population; its samples "
         "must stand together"},
        {"STRUCTURE zero", "A B\ns1 1 100 -9\ns1 1 102 0\n", any,
         "f:3: sample 's1', locus 'B': expected an allele size (a whole number above 0) or -9, "
         "got '0'"},
        {"STRUCTURE short row", "s1 1 100 102\ns2 1 100\n", any,
         "f:2: sample 's2': expected 4 columns as line 1, got 3"},
        {"STRUCTURE unnamed form", "s1 1 100\ns1 1 102\ns2 2 100\ns2 2 104\n", any,
         "f:1: the file does not tell whether column 2 is a population or a locus: name the form "
         "(--format structure-2row-pop or structure-2row)"},
        {"STRUCTURE label thrice", "s1 100 102\ns1 100 102\ns1 100 104\n",
         FormatChoice{DataFormat::Structure, {R::Unknown, C::No}},
         "f:2: sample 's1': the label stands on line 1 too, but the rows do not pair up: name the "
         "form (--format structure-1row or structure-2row)"},
        {"tidy letters", "sample,population,locus,allele1,allele2\na,P,L,10x,100\n", any,
         "f:2: sample 'a', locus 'L': expected an allele size (a whole number), 0, NA or nothing, "
         "got '10x'"},
        {"tidy two populations", "sample,population,locus,allele1,allele2\na,P,L,1,2\na,Q,M,1,2\n",
         any, "f:3: sample 'a': the sample is listed under population 'P' before, here under 'Q'"},
        {"tidy repeated name short a locus",
         "sample,population,locus,allele1,allele2\na,P,L,1,2\na,P,M,1,2\na,P,L,3,4\n", any,
         "f:3: sample 'a', locus 'M': the name stands for 2 samples but has 1 row(s) at this "
         "locus"},
        {"tidy wide unpaired", "sample,population,L_a,M_b\na,P,1,2\n", any,
         "f:1: expected a pair of columns LOCUS_a, LOCUS_b, got 'L_a', 'M_b'"},
        {"unknown", "just some words\nand more words\n", any,
         "f: not a data file Tavrelle can tell: expected Genepop, GenAlEx, STRUCTURE, a tidy CSV "
         "table or a workbook (name the format with --format)"},
        {"empty", "", FormatChoice{DataFormat::Genepop, {}}, "f: the file is empty"},
    };
    for (const Refusal& refusal : cases) {
        GenotypeRead read = ReadGenotypeText(refusal.text, "f", refusal.format);
        EXPECT_FALSE(read.Ok()) << refusal.what;
        EXPECT_EQ(FirstProblem(read), refusal.located) << refusal.what;
    }
}

TEST(GenotypeReaders, EveryProblemIsCountedAndTheFirstFewKept) {
    std::string text = "T\nL\nPop\n";
    for (int sample = 0; sample < 25; ++sample)
        text += "s" + std::to_string(sample) + " , 1822088\n";
    GenotypeRead read = ReadGenepopText(text, "many.gen");
    EXPECT_EQ(read.problemCount, 25u);
    ASSERT_EQ(read.problems.size(), GenotypeRead::kProblemsKept);
    EXPECT_EQ(read.problems[9].line, 13u);
    EXPECT_NE(read.ProblemText().find("... and 15 more problems\n"), std::string::npos);
}

TEST(GenotypeReaders, TheFormatIsToldFromTheBytes) {
    const std::vector<std::pair<std::string, DataFormat>> cases = {
        {"Title\nA\nPop\nx , 100100\n", DataFormat::Genepop},
        {"Title, with commas 1,2,3\nA\npop\nx , 0101\n", DataFormat::Genepop},
        {"3,10,2,5,5\nTitle,,,P,Q\nInd,Pop,A,,B,,C,\n", DataFormat::Genalex},
        {"3;10;2;5;5\nTitle;;;P;Q\n", DataFormat::Genalex},
        {"sample,population,locus,allele1,allele2\n", DataFormat::Tidy},
        {"Sample\tPop\tA_a\tA_b\n", DataFormat::Tidy},
        {"A B C\ns1 1 100 102 98\ns1 1 102 102 -9\n", DataFormat::Structure},
        {"PK\x03\x04rest", DataFormat::Xlsx},
        {std::string("\xD0\xCF\x11\xE0rest"), DataFormat::Xls},
        {"words only\nmore words here\n", DataFormat::Unknown},
        {"", DataFormat::Unknown},
    };
    for (const auto& [text, format] : cases)
        EXPECT_EQ(DetectFormat(text), format) << text;
}

TEST(GenotypeReaders, StructureFormsWithAndWithoutPopulationsAndNames) {
    const std::vector<AllelePair> s1{{100, 102}, {0, 98}};
    struct Form {
        std::string text;
        FormatChoice choice;
        std::string population;  // of s1
    };
    using R = StructureForm::Rows;
    using C = StructureForm::PopulationColumn;
    const std::vector<Form> forms = {
        {"s1 4 100 102 -9 98\ns2 4 100 100 98 98\n", {}, "4"},
        {"s1 100 102 -9 98\ns2 100 100 98 98\n", {}, "file"},
        {"A B\ns1 4 100 -9\ns1 4 102 98\ns2 4 100 98\ns2 4 100 98\n", {}, "4"},
        {"A B\ns1 100 -9\ns1 102 98\ns2 100 98\ns2 100 98\n", {}, "file"},
        {"s1 100 -9\ns1 102 98\ns2 100 98\ns2 100 98\n",
         {DataFormat::Structure, {R::Two, C::No}},
         "file"},
        {"s1 7 100 -9\ns1 7 102 98\ns2 7 100 98\ns2 7 100 98\n",
         {DataFormat::Structure, {R::Two, C::Yes}},
         "7"},
    };
    for (const Form& form : forms) {
        GenotypeRead read = ReadGenotypeText(form.text, "dir/file.str", form.choice);
        ASSERT_TRUE(read.Ok()) << form.text << read.ProblemText();
        ASSERT_EQ(read.data.populations.size(), 1u) << form.text;
        EXPECT_EQ(read.data.populations[0].name, form.population) << form.text;
        EXPECT_EQ(read.data.populations[0].samples[0].genotypes, s1) << form.text;
        EXPECT_EQ(read.data.populations[0].samples.size(), 2u) << form.text;
    }
}

TEST(GenotypeReaders, GenalexTrustsItsRowsOverItsCountRowAndSaysSo) {
    GenotypeRead read = ReadGenotypeText(
        "1,5,1,5\nStudy,,,North\nInd,Pop,A,\nn1,North,100,102\nn2,North,0,\ns1,South,98,98\n",
        "g.csv");
    ASSERT_TRUE(read.Ok()) << read.ProblemText();
    ASSERT_EQ(read.data.populations.size(), 2u);
    EXPECT_EQ(read.data.populations[1].name, "South");
    EXPECT_EQ(read.data.title, "Study");
    EXPECT_EQ(read.data.populations[0].samples[1].genotypes[0], (AllelePair{0, 0}));
    ASSERT_EQ(read.notes.size(), 2u);
    EXPECT_EQ(LocatedText(read.file, read.notes[0]),
              "g.csv:1: the count row says 5 samples, the file has 3; the rows are used");
    EXPECT_EQ(LocatedText(read.file, read.notes[1]),
              "g.csv:1: the count row says 1 populations, the file has 2; the rows are used");
}

TEST(GenotypeReaders, WritersRefuseWhatTheirFormatCannotHold) {
    GenotypeData data{"T", {"A"}, {{"P", {{"has, comma", {{1000, 2}}}, {"two words", {{1, 2}}}}}}};
    GenotypeRead refusal;
    refusal.file = "out";
    GenepopText(data, refusal);
    ASSERT_EQ(refusal.problemCount, 2u) << refusal.ProblemText();
    EXPECT_EQ(LocatedText("out", refusal.problems[0]),
              "out: sample 'has, comma': Genepop cannot hold a sample name with a comma or line "
              "break");
    EXPECT_EQ(LocatedText("out", refusal.problems[1]),
              "out: sample 'has, comma', locus 'A': an allele over 999 does not fit Genepop's "
              "three digits");
    GenotypeRead structure;
    StructureText(data, structure);
    EXPECT_EQ(structure.problemCount, 4u);  // both names have blanks, once per row
}

}  // namespace
}  // namespace tavrelle
