#pragma once
// The clipboard: reads what another program has put there, and can offer all of it in that
// program's stead after the clipboard has been used for something else.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "desktop/x11/Connection.h"
#include "desktop/x11/Properties.h"

namespace quibbits::x11 {

class Clipboard {
public:
    /// What the clipboard gives to those who ask for one of its forms.
    struct Piece {
        xcb_atom_t form = XCB_NONE;
        xcb_atom_t type = XCB_NONE;
        std::string bytes;
    };
    using Contents = std::vector<Piece>;

    explicit Clipboard(Connection& connection);
    ~Clipboard();
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;

    /// All of it: every text, and one picture. Nothing where it is too large to be given back, or
    /// where its owner does not answer. One reading at a time.
    void readAll(std::function<void(std::optional<Contents>)> done);
    /// One form of it; nothing where it has none.
    void read(Atom form, std::function<void(std::optional<std::string>)> done);
    void offer(Contents contents);

    /// Another program has put something there.
    Signal<> taken;

private:
    struct Reading {
        std::vector<xcb_atom_t> wanted;  // the next one last
        Contents found;
        std::size_t size = 0;
        bool isAll = false;                 // the forms are still to be chosen from a list
        std::optional<std::string> pieces;  // of what is too long for one message
        std::function<void(std::optional<Contents>)> done;
    };
    void askNext();
    void answered(const xcb_selection_notify_event_t& answer);
    void chooseForms();
    void piece();
    void add(LongText text);
    std::optional<LongText> takeTransfer();
    void end(bool isWhole);
    void serve(const xcb_selection_request_event_t& request);
    bool give(const xcb_selection_request_event_t& request, xcb_atom_t property) const;

    Connection& connection_;
    xcb_window_t window_;
    std::optional<Reading> reading_;
    Contents contents_;  // while this is the owner
    Timer patience_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
