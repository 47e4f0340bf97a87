#include "codecs/Credits.h"

#include <utility>

#include "codecs/Json.h"

namespace quibbits {
namespace {

bool readInto(std::string& field, const Json& object, std::string_view key) {
    const Json* member = object.find(key);
    const auto* text = member ? member->as<std::string>() : nullptr;
    if (text) field = *text;
    return text != nullptr;
}

bool readInto(std::vector<std::string>& field, const Json& object, std::string_view key) {
    const Json* member = object.find(key);
    const auto* list = member ? member->as<Json::Array>() : nullptr;
    if (!list) return false;
    for (const Json& each : *list) {
        const auto* text = each.as<std::string>();
        if (!text) return false;
        field.push_back(*text);
    }
    return true;
}

std::optional<Credit> readCredit(const Json& object) {
    Credit credit;
    const bool whole =
        readInto(credit.artist, object, "artist") && readInto(credit.contact, object, "contact") &&
        readInto(credit.set, object, "set") && readInto(credit.kind, object, "kind") &&
        readInto(credit.license, object, "license") && readInto(credit.source, object, "source") &&
        readInto(credit.parts, object, "parts");
    if (!whole) return std::nullopt;
    return credit;
}

}  // namespace

std::optional<std::vector<Credit>> readCredits(std::string_view json) {
    const auto parsed = Json::parse(json);
    const auto* list = parsed ? parsed.value->as<Json::Array>() : nullptr;
    if (!list) return std::nullopt;
    std::vector<Credit> credits;
    for (const Json& object : *list) {
        auto credit = readCredit(object);
        if (!credit) return std::nullopt;
        credits.push_back(*std::move(credit));
    }
    return credits;
}

}  // namespace quibbits
