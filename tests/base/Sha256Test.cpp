#include "base/Sha256.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace tavrelle {
namespace {

// The test vectors of FIPS 180-4's examples and NIST's byte-oriented set: empty, one block, two
// blocks, a message that ends at the padding's edge (55 and 56 bytes) and a million bytes.
TEST(Sha256, MatchesTheStandardsTestVectors) {
    const struct {
        std::string message;
        const char* digest;
    } cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrl"
         "mnopqrsmnopqrstnopqrstu",
         "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1"},
        {std::string(55, 'a'), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318"},
        {std::string(56, 'a'), "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a"},
        {std::string(1'000'000, 'a'),
         "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Sha256Hex(c.message), c.digest) << c.message.size() << " bytes";
}

TEST(Sha256, OfAFileEqualsOfItsBytesAndNothingForAMissingFile) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("tavrelle-sha256-" + std::to_string(::getpid()) + ".gen");
    // Longer than one read, so that the pieces are joined.
    std::string bytes;
    for (int i = 0; i < 100'000; ++i)
        bytes += static_cast<char>(i % 251);
    std::ofstream(path, std::ios::binary) << bytes;
    EXPECT_EQ(Sha256OfFile(path), Sha256Hex(bytes));
    std::filesystem::remove(path);
    EXPECT_EQ(Sha256OfFile(path), std::nullopt);
}

}  // namespace
}  // namespace tavrelle
