#include "codecs/Xml.h"

#include <expat.h>

#include <memory>

namespace quibbits {
namespace {

using ParserRef = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

struct Collector {
    XML_Parser parser;
    std::vector<XmlEvent> events;

    void add(XmlEvent::Kind kind, std::string_view value) {
        if (events.size() == xmlMostEvents) {
            XML_StopParser(parser, XML_FALSE);
            return;
        }
        events.push_back({kind, std::string(value)});
    }
};

Collector& collector(void* data) {
    return *static_cast<Collector*>(data);
}

void startElement(void* data, const XML_Char* name, const XML_Char**) {
    collector(data).add(XmlEvent::Kind::startElement, name);
}

void endElement(void* data, const XML_Char* name) {
    collector(data).add(XmlEvent::Kind::endElement, name);
}

void text(void* data, const XML_Char* characters, int count) {
    auto& all = collector(data);
    const std::string_view part(characters, static_cast<std::size_t>(count));
    if (!all.events.empty() && all.events.back().kind == XmlEvent::Kind::text) {
        all.events.back().value += part;
    } else {
        all.add(XmlEvent::Kind::text, part);
    }
}

// A default handler keeps expat from expanding the entities that a document declares.
void leaveOut(void*, const XML_Char*, int) {}

}  // namespace

std::vector<XmlEvent> xmlEvents(std::string_view document) {
    if (document.size() > xmlMostBytes) return {};
    const ParserRef parser(XML_ParserCreate(nullptr), &XML_ParserFree);
    if (!parser) return {};
    Collector collected{parser.get(), {}};
    XML_SetUserData(parser.get(), &collected);
    XML_SetElementHandler(parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser.get(), text);
    XML_SetDefaultHandler(parser.get(), leaveOut);
    XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE);
    return std::move(collected.events);
}

bool isWhole(const std::vector<XmlEvent>& events) {
    int depth = 0;
    int elements = 0;
    for (const XmlEvent& event : events) {
        if (event.kind == XmlEvent::Kind::startElement) ++depth, ++elements;
        if (event.kind == XmlEvent::Kind::endElement) --depth;
    }
    return depth == 0 && elements > 1;
}

}  // namespace quibbits
