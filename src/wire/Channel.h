#pragma once
// Messages over a stream socket between two processes of this program: a text of JSON, or a picture
// under its number. Both ends are bounded: a message that is too long or broken ends the channel.

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <variant>

#include "platform/Image.h"

namespace quibbits::views {

struct NumberedPicture {
    std::uint64_t number = 0;
    Image image;
};
using Message = std::variant<std::string, NumberedPicture>;

/// What is to be sent, as bytes.
std::string packed(const std::string& json);
std::string packed(const NumberedPicture& picture);

/// Puts messages together again from bytes that come in pieces.
class Unpacker {
public:
    /// False when the bytes are no messages; from then on they never are.
    bool add(const char* bytes, std::size_t count);
    /// The next whole message; nothing while there is none.
    std::optional<Message> next();

private:
    std::string pending_;
    std::deque<Message> messages_;
    bool broken_ = false;
};

}  // namespace quibbits::views
