#pragma once
// What an ordinary window shows, as plain values. A screen is a function from records to a tree of
// views; whoever owns the window turns the tree into widgets and sends back actions. Nothing in a
// tree is a function, so it can be compared, written down and sent to another process.
//
// A view that can be acted upon has an identity that is unique in its tree and the same in every
// later tree: that is how scroll position, focus and an open tab survive an update, and how an
// action finds its meaning.

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "platform/Color.h"
#include "platform/Date.h"
#include "platform/Geometry.h"
#include "platform/Image.h"

namespace quibbits::views {

// Boxes, which arrange their children ------------------------------------------------------------

struct Column {
    double centredWidth = 0;  // points; unless it is 0, all that it holds stands in its middle
    bool operator==(const Column&) const = default;
};
struct Line {
    bool balanced = false;  // of three children the second stands in the line's very middle
    bool operator==(const Line&) const = default;
};
/// Cells of equal width, as many in a row as fit.
struct Grid {
    double cellWidth = 200;
    bool operator==(const Grid&) const = default;
};
/// A column that scrolls.
struct Form {
    bool operator==(const Form&) const = default;
};
/// A framed group of rows.
struct Section {
    std::string heading;
    std::string footer;
    bool operator==(const Section&) const = default;
};
/// A part that opens and closes by its title.
struct Disclosure {
    std::string title;
    bool operator==(const Disclosure&) const = default;
};
/// A framed cell; one that opens something shows so, and acts when it is clicked.
struct Card {
    bool opens = false;
    bool operator==(const Card&) const = default;
};
/// One page at a time. Its children are Tabs; the action's value is the new index.
struct TabView {
    std::int64_t chosen = 0;
    bool operator==(const TabView&) const = default;
};
struct Tab {
    std::string title;
    std::string symbol;
    bool operator==(const Tab&) const = default;
};
/// A list beside what it chooses: the last child is the detail, the others are SidebarRows. The
/// action's value is the identity of a row.
struct Split {
    std::string chosen;
    bool operator==(const Split&) const = default;
};
struct SidebarRow {
    std::string title;
    std::string symbol;
    Image picture;
    bool startsGroup = false;
    bool operator==(const SidebarRow&) const = default;
};
/// A page that scrolls, above a bar that stays: the last child is the bar.
struct Paged {
    bool operator==(const Paged&) const = default;
};

// Leaves -----------------------------------------------------------------------------------------

enum class TextStyle { body, title, headline, medium, secondary, caption, faint };
struct Text {
    std::string text;
    TextStyle style = TextStyle::body;
    bool selectable = false;
    std::string strong = {};      // the part of the text that stands out
    std::int64_t mostLines = 0;   // 0 for as many as it takes
    std::int64_t leastLines = 0;  // it has the room of so many, at its top
    bool operator==(const Text&) const = default;
};
/// A symbol, a title over a detail, and a value at the end; what is empty is left out.
struct Fact {
    std::string symbol;
    std::string title;
    std::string detail;
    std::string value;
    bool strong = false;  // the title stands out
    std::string valueSymbol = {};
    bool operator==(const Fact&) const = default;
};
struct Picture {
    Image image;  // enlarged without smoothing; without one the symbol stands in its place
    std::string symbol;
    double size = 48;  // points
    bool round = false;
    bool drained = false;  // of colour
    bool operator==(const Picture&) const = default;
};
/// A bar beside its title and value.
struct Meter {
    std::string title;
    std::string value;
    double amount = 0;  // 0 to 1
    Color tint;         // clear for the window's own accent
    bool operator==(const Meter&) const = default;
};
/// The action's value is true or false.
struct Toggle {
    std::string title;
    std::string detail;
    bool isOn = false;
    bool operator==(const Toggle&) const = default;
};
/// The action's value is the new number.
struct Stepper {
    std::string title;
    std::int64_t value = 0;
    std::int64_t lowest = 0;
    std::int64_t highest = 0;
    std::int64_t step = 1;
    bool operator==(const Stepper&) const = default;
};
/// The action's value is the identity of a choice.
struct Picker {
    struct Choice {
        std::string id;
        std::string title;
        bool operator==(const Choice&) const = default;
    };
    std::string title;
    std::vector<Choice> choices;
    std::string chosen;
    bool segmented = false;
    bool operator==(const Picker&) const = default;
};
enum class ButtonRole { ordinary, primary, destructive, borderless };
struct Button {
    std::string title;
    std::string symbol;
    ButtonRole role = ButtonRole::ordinary;
    bool operator==(const Button&) const = default;
};
/// Lets the user pick any number of entries from a list: a button until it is pressed. The
/// action's value is the identities that were picked, in the order of picking.
struct Chooser {
    struct Entry {
        std::string id;
        std::string title;
        std::string icon;  // of the desktop's icon theme
        bool operator==(const Entry&) const = default;
    };
    std::string title;
    std::vector<Entry> entries;
    bool operator==(const Chooser&) const = default;
};
/// The action has no value: whoever gets it opens the address.
struct Link {
    std::string title;
    std::string address;
    bool operator==(const Link&) const = default;
};
/// An application as the desktop knows it.
struct Application {
    std::string name;
    std::string icon;  // of the desktop's icon theme; empty when nobody knows the application
    bool operator==(const Application&) const = default;
};
/// A question over the window for as long as it stands in the tree. The action's value is true for
/// the button, false for changing one's mind.
struct Alert {
    std::string title;
    std::string message;
    std::string button;
    bool destructive = false;
    bool operator==(const Alert&) const = default;
};
/// A row of dots, one of which stands out.
struct Dots {
    std::int64_t count = 0;
    std::int64_t current = 0;
    bool operator==(const Dots&) const = default;
};
/// Frames of pixel art in turn, for ever.
struct Preview {
    struct Frame {
        std::int64_t image = 0;  // into the images
        Rect part;               // in unit coordinates, y downwards
        bool operator==(const Frame&) const = default;
    };
    Size size;   // points
    Rect place;  // of the sprite in it, y upwards
    std::vector<Image> images;
    std::vector<Frame> frames;
    Seconds frameTime = 0;
    bool operator==(const Preview&) const = default;
};
/// Takes the room that is left.
struct Spacer {
    bool operator==(const Spacer&) const = default;
};

using Content =
    std::variant<Column, Line, Grid, Form, Section, Disclosure, Card, TabView, Tab, Split,
                 SidebarRow, Paged, Text, Fact, Picture, Meter, Toggle, Stepper, Picker, Button,
                 Chooser, Link, Application, Alert, Dots, Preview, Spacer>;

struct View {
    Content content;
    std::string id = {};
    std::vector<View> children = {};
    bool enabled = true;
    double opacity = 1;
    std::string spoken =
        {};  // its name for who does not see it, where what is seen says too little
    bool operator==(const View&) const = default;

    template <typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&content);
    }
};

using Views = std::vector<View>;

/// The first view in the tree, in reading order, that has the identity; none when there is none.
const View* find(const View& tree, std::string_view id);
/// Every text that the tree shows, in reading order.
std::vector<std::string> texts(const View& tree);
/// Hands out the same texts, and those that are empty, to be changed.
void eachText(View& tree, const std::function<void(std::string&)>& use);

/// What the user did.
struct Action {
    using Value =
        std::variant<std::monostate, bool, std::int64_t, std::string, std::vector<std::string>>;
    std::string id;  // of the view
    Value value;
    bool operator==(const Action&) const = default;

    template <typename Kind>
    const Kind* as() const {
        return std::get_if<Kind>(&value);
    }
};

}  // namespace quibbits::views
