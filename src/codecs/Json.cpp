#include "codecs/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <unordered_map>

namespace quibbits {
namespace {

/// Leaves one member a key: the first one's place, the last one's value.
void dropRepeatedKeys(Json::Object& members) {
    std::unordered_map<std::string_view, std::size_t> first;
    first.reserve(members.size());
    std::vector<bool> repeated(members.size());
    bool any = false;
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto [seen, fresh] = first.emplace(members[i].first, i);
        if (fresh) continue;
        members[seen->second].second = std::move(members[i].second);
        repeated[i] = any = true;
    }
    if (!any) return;
    Json::Object kept;
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (!repeated[i]) kept.push_back(std::move(members[i]));
    }
    members = std::move(kept);
}

/// Builds the value from the parser's events; refuses what is nested too deeply.
class Builder : public nlohmann::json_sax<nlohmann::json> {
public:
    Json root;
    std::string message;
    std::size_t position = 0;

    bool null() override { return put(Json{}); }
    bool boolean(bool value) override { return put(value); }
    bool number_integer(number_integer_t value) override { return put(std::int64_t{value}); }
    bool number_unsigned(number_unsigned_t value) override {
        constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
        return value <= most ? put(static_cast<std::int64_t>(value))
                             : put(static_cast<double>(value));
    }
    bool number_float(number_float_t value, const string_t&) override { return put(value); }
    bool string(string_t& value) override { return put(std::move(value)); }
    bool binary(binary_t&) override { return false; }

    bool start_object(std::size_t) override { return open(Json::Object{}); }
    bool key(string_t& name) override {
        key_ = std::move(name);
        return true;
    }
    bool end_object() override {
        dropRepeatedKeys(*open_.back()->as<Json::Object>());
        return close();
    }
    bool start_array(std::size_t) override { return open(Json::Array{}); }
    bool end_array() override { return close(); }

    bool parse_error(std::size_t at, const std::string&,
                     const nlohmann::json::exception& error) override {
        position = at;
        message = error.what();
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        if (const auto end = message.find("] "); end != std::string::npos) {
            message.erase(0, end + 2);
        }
        return false;
    }

private:
    Json* place(Json value) {
        if (open_.empty()) {
            root = std::move(value);
            return &root;
        }
        if (auto* list = open_.back()->as<Json::Array>()) {
            return &list->emplace_back(std::move(value));
        }
        auto& members = *open_.back()->as<Json::Object>();
        return &members.emplace_back(std::move(key_), std::move(value)).second;
    }
    bool put(Json value) {
        place(std::move(value));
        return true;
    }
    bool open(Json container) {
        if (open_.size() == jsonMostDepth) {
            message = "nested more than " + std::to_string(jsonMostDepth) + " deep";
            return false;
        }
        open_.push_back(place(std::move(container)));
        return true;
    }
    bool close() {
        open_.pop_back();
        return true;
    }

    std::vector<Json*> open_;  // stays valid: only the innermost container grows
    std::string key_;
};

class Writer {
public:
    explicit Writer(int indent) : indent_(indent) {}

    void write(const Json& value) {
        if (const auto* list = value.as<Json::Array>()) {
            writeItems('[', *list, ']', [this](const Json& item) { write(item); });
        } else if (const auto* members = value.as<Json::Object>()) {
            writeItems('{', *members, '}', [this](const Json::Member& member) {
                writeText(member.first);
                out += indent_ > 0 ? ": " : ":";
                write(member.second);
            });
        } else if (const auto* text = value.as<std::string>()) {
            writeText(*text);
        } else if (const auto* real = value.as<double>()) {
            out += nlohmann::json(*real).dump();
        } else if (const auto* whole = value.as<std::int64_t>()) {
            out += std::to_string(*whole);
        } else if (const auto* truth = value.as<bool>()) {
            out += *truth ? "true" : "false";
        } else {
            out += "null";
        }
    }

    std::string out;

private:
    void writeText(const std::string& text) {
        out += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    void newLine() {
        if (indent_ > 0)
            out.append(1, '\n').append(static_cast<std::size_t>(indent_ * depth_), ' ');
    }
    template <typename Items, typename Write>
    void writeItems(char opening, const Items& items, char closing, Write writeItem) {
        out += opening;
        ++depth_;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (i > 0) out += ',';
            newLine();
            writeItem(items[i]);
        }
        --depth_;
        if (!items.empty()) newLine();
        out += closing;
    }

    int indent_;
    int depth_ = 0;
};

}  // namespace

std::optional<double> Json::number() const {
    if (const auto* whole = as<std::int64_t>()) return static_cast<double>(*whole);
    if (const auto* real = as<double>()) return *real;
    return std::nullopt;
}

const Json* Json::find(std::string_view key) const {
    const auto* members = as<Object>();
    if (!members) return nullptr;
    const auto found = std::ranges::find(*members, key, &Member::first);
    return found == members->end() ? nullptr : &found->second;
}

void Json::set(std::string_view key, Json value) {
    if (!as<Object>()) value_ = Object{};
    auto& members = *as<Object>();
    const auto found = std::ranges::find(members, key, &Member::first);
    if (found == members.end()) {
        members.emplace_back(key, std::move(value));
    } else {
        found->second = std::move(value);
    }
}

bool Json::erase(std::string_view key) {
    auto* members = as<Object>();
    return members &&
           std::erase_if(*members, [&](const Member& member) { return member.first == key; }) > 0;
}

JsonResult Json::parse(std::string_view text) {
    if (text.size() > jsonMostBytes) return {.error = {"larger than 16 MiB", jsonMostBytes}};
    Builder builder;
    if (nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) {
        return {.value = std::move(builder.root)};
    }
    return {.error = {std::move(builder.message), builder.position}};
}

std::string Json::dump(int indent) const {
    Writer writer(indent);
    writer.write(*this);
    return std::move(writer.out);
}

}  // namespace quibbits
