#include "desktop/x11/DropData.h"

#include <unistd.h>

#include <array>
#include <optional>

namespace quibbits::x11 {
namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%') {
            if (i + 2 >= text.size()) return std::nullopt;
            const int high = hexDigit(text[i + 1]);
            const int low = hexDigit(text[i + 2]);
            if (high < 0 || low < 0) return std::nullopt;
            c = static_cast<char>(high * 16 + low);
            i += 2;
        }
        if (c == '\0') return std::nullopt;
        out += c;
    }
    return out;
}

bool isThisMachine(std::string_view host) {
    std::array<char, 256> name{};
    gethostname(name.data(), name.size() - 1);
    return host.empty() || host == "localhost" || host == name.data();
}

std::optional<std::string> fileOfUri(std::string_view uri) {
    constexpr std::string_view scheme = "file:";
    if (!uri.starts_with(scheme)) return std::nullopt;
    uri.remove_prefix(scheme.size());
    if (uri.starts_with("//")) {
        const auto path = uri.find('/', 2);
        if (path == std::string_view::npos || !isThisMachine(uri.substr(2, path - 2))) {
            return std::nullopt;
        }
        uri.remove_prefix(path);
    }
    return uri.starts_with('/') ? percentDecoded(uri) : std::nullopt;
}

}  // namespace

std::vector<std::string> filesOfUriList(std::string_view list) {
    std::vector<std::string> files;
    while (list.ends_with('\0')) list.remove_suffix(1);  // as C ends a text
    while (!list.empty()) {
        const auto end = std::min(list.find_first_of("\r\n"), list.size());
        if (auto file = fileOfUri(list.substr(0, end))) files.push_back(std::move(*file));
        const auto next = std::min(list.find_first_not_of("\r\n", end), list.size());
        list.remove_prefix(next);
    }
    return files;
}

}  // namespace quibbits::x11
