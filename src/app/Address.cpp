#include "app/Address.h"

#include <charconv>

namespace quibbits {
namespace {

/// Reads percent codes; what only looks like one stays.
std::string withoutCodes(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char code = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const bool isCode =
            text[i] == '%' && digits.size() == 2 &&
            std::from_chars(digits.data(), digits.data() + 2, code, 16).ptr == digits.data() + 2;
        plain += isCode ? static_cast<char>(code) : text[i];
        if (isCode) i += 2;
    }
    return plain;
}

}  // namespace

std::optional<std::string> wordOf(std::string_view address) {
    if (!address.starts_with(ownScheme)) return std::nullopt;
    address.remove_prefix(ownScheme.size());
    if (!address.starts_with("//")) return "";
    std::string_view host = address.substr(2);
    host = host.substr(0, host.find_first_of("/?#"));
    if (const auto user = host.rfind('@'); user != host.npos) host.remove_prefix(user + 1);
    return withoutCodes(host.substr(0, host.find(':')));
}

}  // namespace quibbits
