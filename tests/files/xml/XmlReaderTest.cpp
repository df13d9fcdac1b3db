#include "xml/XmlReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TeskPartFiles/PartFiles.h"
#include "text/Message.h"

namespace {

using Tesk::files::message;
using Tesk::files::XmlElement;
using Tesk::files::XmlName;
using Tesk::files::XmlReader;
using testing::ElementsAre;
using testing::HasSubstr;

/// "space|name" of each start and "/name" of each end; the text comes in pieces of this size.
std::vector<std::string> eventsOf(std::string_view text, std::size_t pieceSize = 7) {
    std::vector<std::string> events;
    XmlReader xml("a.xml",
                  {[&](const XmlElement& element) {
                       events.push_back(message(element.space(), "|", element.localName()));
                   },
                   [&](const XmlName& name) { events.push_back(message("/", name.local)); }});
    for (; !text.empty(); text.remove_prefix(std::min(pieceSize, text.size()))) {
        xml.feed(text.substr(0, pieceSize));
    }
    xml.finish();
    return events;
}

std::string complaint(std::string_view text) {
    try {
        eventsOf(text);
        return "";
    } catch (const Tesk::PartFileError& error) {
        return error.what();
    }
}

TEST(XmlReader, NamesComeWithTheirNamespace) {
    constexpr const char* kText = "<a xmlns='u'><p:b xmlns:p='v'><c/></p:b><p:b/><d xmlns=''/></a>";
    for (const std::size_t size : {1, 5, 1000}) {
        EXPECT_THAT(eventsOf(kText, size),
                    ElementsAre("u|a", "v|b", "u|c", "/c", "/b", "p:|b", "/b", "|d", "/d", "/a"));
    }
}

TEST(XmlReader, AttributesAreFoundByNameAndNamespace) {
    bool isSeen = false;
    XmlReader xml("a.xml", {[&](const XmlElement& element) {
                                isSeen = true;
                                EXPECT_EQ(element.attribute("x"), "1");
                                EXPECT_EQ(element.attribute("y"), std::nullopt);
                                EXPECT_EQ(element.attribute("v", "y"), "2");
                                EXPECT_EQ(element.attribute("w", "y"), std::nullopt);
                                EXPECT_EQ(element.undeclaredAttribute("z"), "q:z");
                                EXPECT_EQ(element.undeclaredAttribute("y"), std::nullopt);
                            },
                            [](const XmlName&) {}});
    xml.feed("<a xmlns:p='v' x='1' p:y='2' q:z='3'/>");
    xml.finish();
    EXPECT_TRUE(isSeen);
}

TEST(XmlReader, ErrorsNameFileAndLine) {
    EXPECT_EQ(complaint("<a>\n\n</b>"), "a.xml, line 3: not well-formed XML (mismatched tag)");
    EXPECT_THAT(complaint("<a>"), HasSubstr("a.xml, line 1: not well-formed XML"));
    EXPECT_EQ(complaint("\n<!DOCTYPE a><a/>"),
              "a.xml, line 2: a document type declaration, which 3MF forbids");
}

TEST(XmlReader, WhatAHandlerThrowsReachesTheCaller) {
    XmlReader xml("a.xml", {[](const XmlElement&) { throw Tesk::PartFileError("no"); },
                            [](const XmlName&) {}});
    try {
        xml.feed("\n<a/>");
        FAIL();
    } catch (const Tesk::PartFileError& error) {
        EXPECT_STREQ(error.what(), "a.xml, line 2: no");
    }
    XmlReader other("b.xml", {[](const XmlElement&) { throw 7; }, [](const XmlName&) {}});
    EXPECT_THROW(other.feed("<a/>"), int);
}

}  // namespace
