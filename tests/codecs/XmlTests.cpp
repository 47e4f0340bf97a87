#include <gtest/gtest.h>

#include "codecs/Xml.h"

namespace quibbits {

static bool operator==(const XmlEvent& a, const XmlEvent& b) {
    return a.kind == b.kind && a.value == b.value;
}

namespace {

using Kind = XmlEvent::Kind;

TEST(Xml, ElementsAndTextsComeInOrderAndEachTextIsOneEvent) {
    const std::vector<XmlEvent> expected{
        {Kind::startElement, "Anims"}, {Kind::startElement, "Width"}, {Kind::text, "a & b\n<c>"},
        {Kind::endElement, "Width"},   {Kind::endElement, "Anims"},
    };
    EXPECT_TRUE(xmlEvents("<?xml version='1.0'?><Anims><!-- x --><Width size='1'>a &amp; b\n"
                          "<![CDATA[<c>]]></Width></Anims>") == expected);
}

TEST(Xml, WhatStandsBeforeAMistakeIsKept) {
    const auto events = xmlEvents("<a><b>1</b></c>");
    ASSERT_EQ(events.size(), 4u);
    EXPECT_EQ(events.back().value, "b");
    EXPECT_TRUE(xmlEvents("").empty());
    EXPECT_TRUE(xmlEvents("no markup").empty());
}

TEST(Xml, EntitiesOfTheDocumentAreNeverExpanded) {
    std::string document = "<!DOCTYPE a [<!ENTITY e0 'laugh'>";
    for (int i = 1; i < 12; ++i) {
        document += "<!ENTITY e" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) document += "&e" + std::to_string(i - 1) + ";";
        document += "'>";
    }
    document += "<!ENTITY file SYSTEM '/etc/hostname'>]><a>x&e11;&file;y</a>";
    const auto events = xmlEvents(document);
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events[1].value, "xy");
}

TEST(Xml, TheNumberOfEventsAndTheSizeAreBounded) {
    std::string document = "<a>";
    for (std::size_t i = 0; i < xmlMostEvents; ++i) document += "<b/>";
    EXPECT_EQ(xmlEvents(document).size(), xmlMostEvents);
    EXPECT_TRUE(xmlEvents("<a>" + std::string(xmlMostBytes, ' ') + "</a>").empty());
}

}  // namespace
}  // namespace quibbits
