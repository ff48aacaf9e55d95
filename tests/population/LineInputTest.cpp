#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "population/LineInput.h"

namespace tavrelle {
namespace {

// The reader sizes its table by LinesLeft: it must count what ReadLine then gives, from the
// start and after a few lines are read.
TEST(LineInput, LinesLeftCountsWhatReadLineGives) {
    const std::vector<std::string> files = {
        "",       "a",      "\n",         "\r",
        "\r\n",   "a\nb",   "a\nb\n",     "a\r\nb\r\n",
        "a\rb\r", "a\r\rb", "\n\n\n",     "a\r\n\r\nb",
        "a\n\rb", "a\r\n",  "x\r\r\n\ny", "line one\nline two\r\nlast line",
    };
    for (const std::string& bytes : files) {
        for (std::size_t skip = 0; skip < 3; ++skip) {
            LineInput input(bytes);
            std::size_t skipped = 0;
            for (; skipped < skip && !input.Eof(); ++skipped)
                input.ReadLine();
            const std::size_t counted = input.LinesLeft();
            std::size_t read = 0;
            for (; !input.Eof(); ++read)
                input.ReadLine();
            EXPECT_EQ(counted, read) << testing::PrintToString(bytes) << " after " << skipped;
        }
    }
}

}  // namespace
}  // namespace tavrelle
