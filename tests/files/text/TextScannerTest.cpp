#include "text/TextScanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReadText.h"
#include "text/Message.h"
#include "text/PlainText.h"

namespace {

using Tesk::files::TextScanner;
using testing::ElementsAre;

std::vector<std::string> tokensOf(TextScanner scanner) {
    std::vector<std::string> tokens;
    for (auto token = scanner.next(); !token.empty(); token = scanner.next()) {
        tokens.push_back(std::to_string(scanner.line()) + ":" + std::string(token));
    }
    return tokens;
}

TEST(TextScanner, KnowsTheLineWhateverEndsIt) {
    for (const char* lineEnd : {"\n", "\r\n", "\r"}) {
        EXPECT_THAT(tokensOf(TextScanner(withLineEnds("a b\n\n\tc  \nd", lineEnd))),
                    ElementsAre("1:a", "1:b", "3:c", "4:d"));
    }
}

TEST(TextScanner, PassesOverComments) {
    EXPECT_THAT(tokensOf(TextScanner("# one\na # two\n#\nb#c\n", '#')),
                ElementsAre("2:a", "4:b#c"));
}

TEST(TextScanner, ABackslashJoinsLines) {
    TextScanner scanner("f 1 2 \\\n 3\\\r\n4 \\ \n5\nnext", '#', /*joinsLines=*/true);
    std::vector<std::string> tokens;
    for (auto token = scanner.nextOnLine(); !token.empty(); token = scanner.nextOnLine()) {
        tokens.emplace_back(token);
    }
    EXPECT_THAT(tokens, ElementsAre("f", "1", "2", "3", "4", "5"));
    EXPECT_EQ(scanner.next(), "next");
    EXPECT_EQ(scanner.line(), 5u);
}

TEST(TextScanner, ABackslashElsewhereIsACharacter) {
    EXPECT_THAT(tokensOf(TextScanner("a\\b \\ c\\", '#', /*joinsLines=*/true)),
                ElementsAre("1:a\\b", "1:\\", "1:c\\"));
}

TEST(TextScanner, TheRestOfALineComesWithoutBlanksAtItsEnds) {
    TextScanner scanner("solid  my part \t\r\nfacet");
    EXPECT_EQ(scanner.next(), "solid");
    EXPECT_EQ(scanner.restOfLine(), "my part");
    EXPECT_EQ(scanner.next(), "facet");
    EXPECT_EQ(scanner.line(), 2u);
}

TEST(Quoted, HidesControlCharactersAndShortens) {
    EXPECT_EQ(Tesk::files::quoted("a\x01\xff"), "\"a??\"");
    EXPECT_EQ(Tesk::files::quoted(std::string(30, 'x')), "\"" + std::string(24, 'x') + "...\"");
}

TEST(PlainText, LosesTheMarksAtItsEnds) {
    EXPECT_EQ(Tesk::files::plainText("\xef\xbb\xbfOFF\x1a", "OFF"), "OFF");
}

TEST(PlainText, NamesTheLineOfANulByte) {
    try {
        Tesk::files::plainText(std::string_view("a\nb\r\nc\0d", 8), "OBJ");
        FAIL();
    } catch (const Tesk::PartFileError& error) {
        EXPECT_STREQ(error.what(),
                     "line 3: contains a NUL byte, which OBJ text files must not have");
    }
}

TEST(PlainText, IsNoUtf16) {
    EXPECT_THROW(Tesk::files::plainText("\xff\xfev", "OBJ"), Tesk::PartFileError);
}

}  // namespace
