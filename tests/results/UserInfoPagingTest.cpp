// Ten loci to a page in the questionnaire, over three pages; the screen's own test pages one,
// ten and eleven loci.
#include <gtest/gtest.h>

#include "results/UserInfoPaging.h"

namespace tavrelle {
namespace {

// First and last locus of the page, and the Prev and Next buttons, as "first-last PN".
std::string Page(const UserInfoPaging& paging) {
    return std::to_string(paging.First()) + "-" + std::to_string(paging.Position() - 1) + " " +
           (paging.PrevEnabled() ? "1" : "0") + (paging.NextEnabled() ? "1" : "0");
}

TEST(UserInfoPagingTest, ThreePages) {
    UserInfoPaging paging(24);
    paging.Next();
    EXPECT_EQ(Page(paging), "10-19 11");
    paging.Next();
    EXPECT_EQ(Page(paging), "20-24 10");
    paging.Prev();
    EXPECT_EQ(Page(paging), "10-19 11");
    paging.Prev();
    EXPECT_EQ(Page(paging), "0-9 01");
}

TEST(UserInfoPagingTest, TwentyLociEndOnAFullPage) {
    UserInfoPaging paging(19);
    paging.Next();
    EXPECT_EQ(Page(paging), "10-19 10");
}

}  // namespace
}  // namespace tavrelle
