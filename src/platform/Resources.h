#pragma once
// Named pictures and descriptions that the program ships with. A set of the user's own replaces
// the built-in one file by file.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Image.h"

namespace quibbits {

/// An event of a description's XML, in document order.
struct XmlEvent {
    enum class Kind { startElement, text, endElement };
    Kind kind = Kind::text;
    std::string value;  // the element's name, or the text
};

/// A piece of work on the creatures' pictures, as its list tells.
struct Credit {
    std::string artist;
    std::string contact;  // a web address, a handle that begins with "@", or anything else
    std::string set;
    std::string kind;
    std::string license;
    std::string source;
    std::vector<std::string> parts;
    bool operator==(const Credit&) const = default;
};

class Resources {
public:
    virtual ~Resources() = default;

    struct PixelSize {
        int width = 0;
        int height = 0;
    };
    /// The size of a named image without decoding it; nothing when it is missing or unreadable.
    virtual std::optional<PixelSize> imageSize(std::string_view name) const = 0;
    /// The rows from first on, at most count of them, decoded and kept. Rows past the end are left
    /// out; a missing, broken or oversized image gives no picture.
    virtual Image imageRows(std::string_view name, int first, int count) const = 0;
    /// The whole image.
    Image image(std::string_view name) const;

    /// The events of a named XML file up to its end or its first error; nothing when it cannot be
    /// opened.
    virtual std::optional<std::vector<XmlEvent>> xml(std::string_view name) const = 0;

    /// Who drew the pictures. A list that is missing or has a mistake is empty.
    virtual std::vector<Credit> credits() const { return {}; }
};

}  // namespace quibbits
