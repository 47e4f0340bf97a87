#include "desktop/x11/Clipboard.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <utility>

namespace quibbits::x11 {
namespace {

constexpr std::size_t mostBytes = 4'000'000;
constexpr std::size_t mostForms = 64;
constexpr Seconds longestAnswer = 0.5;
constexpr std::string_view pictures = "image/";
constexpr std::string_view usualPicture = "image/png";

std::string nameOf(const Connection& connection, xcb_atom_t atom) {
    const auto answer =
        reply(connection.xcb(), xcb_get_atom_name_reply, xcb_get_atom_name(connection.xcb(), atom));
    if (!answer) return {};
    return {xcb_get_atom_name_name(answer.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(answer.get()))};
}

/// Whether a form says something of the clipboard rather than being a part of it.
bool isAboutIt(std::string_view name) {
    static constexpr std::array words{"TARGETS",         "MULTIPLE", "TIMESTAMP",
                                      "SAVE_TARGETS",    "DELETE",   "INSERT_PROPERTY",
                                      "INSERT_SELECTION"};
    return name.empty() || std::ranges::find(words, name) != words.end();
}

}  // namespace

Clipboard::Clipboard(Connection& connection)
    : connection_(connection), window_(xcb_generate_id(connection.xcb())) {
    auto* xcb = connection.xcb();
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb, 0, window_, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    const auto clipboard = connection.atom(Atom::clipboard);
    if (connection.xfixes) {
        xcb_xfixes_select_selection_input(xcb, window_, clipboard,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
        subscriptions_.push_back(connection.listen(
            connection.xfixes->firstEvent + XCB_XFIXES_SELECTION_NOTIFY,
            [this, clipboard](const auto& event) {
                const auto& news =
                    reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
                const bool isOthers = news.owner != XCB_NONE && news.owner != window_;
                if (news.selection == clipboard && isOthers) taken.emit();
            }));
    }
    subscriptions_.push_back(connection.listen(XCB_SELECTION_NOTIFY, [this](const auto& event) {
        const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (answer.requestor == window_ && reading_) answered(answer);
    }));
    subscriptions_.push_back(connection.listen(XCB_PROPERTY_NOTIFY, [this](const auto& event) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        const bool isNew = change.window == window_ && change.state == XCB_PROPERTY_NEW_VALUE;
        if (isNew && reading_ && reading_->pieces) piece();
    }));
    subscriptions_.push_back(connection.listen(XCB_SELECTION_REQUEST, [this](const auto& event) {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.owner == window_) serve(request);
    }));
    subscriptions_.push_back(connection.listen(XCB_SELECTION_CLEAR, [this](const auto& event) {
        const auto& loss = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
        if (loss.owner == window_) contents_.clear();
    }));
    xcb_flush(xcb);
}

Clipboard::~Clipboard() {
    xcb_destroy_window(connection_.xcb(), window_);
    xcb_flush(connection_.xcb());
}

void Clipboard::readAll(std::function<void(std::optional<Contents>)> done) {
    if (!contents_.empty()) return done(contents_);
    auto* xcb = connection_.xcb();
    const auto clipboard = connection_.atom(Atom::clipboard);
    const auto owner =
        reply(xcb, xcb_get_selection_owner_reply, xcb_get_selection_owner(xcb, clipboard));
    if (owner && owner->owner == XCB_NONE) return done(Contents{});
    reading_ = {
        .wanted = {connection_.atom(Atom::targets)}, .isAll = true, .done = std::move(done)};
    askNext();
}

void Clipboard::read(Atom form, std::function<void(std::optional<std::string>)> done) {
    reading_ = {.wanted = {connection_.atom(form)},
                .done = [done = std::move(done)](const std::optional<Contents>& found) {
                    if (!found || found->empty()) return done(std::nullopt);
                    done(found->front().bytes);
                }};
    askNext();
}

void Clipboard::askNext() {
    if (reading_->wanted.empty()) return end(true);
    auto* xcb = connection_.xcb();
    const auto transfer = connection_.atom(Atom::clipboardTransfer);
    xcb_delete_property(xcb, window_, transfer);
    xcb_convert_selection(xcb, window_, connection_.atom(Atom::clipboard), reading_->wanted.back(),
                          transfer, XCB_CURRENT_TIME);
    xcb_flush(xcb);
    patience_ = connection_.loop().timer(longestAnswer, [this] { end(false); });
}

void Clipboard::answered(const xcb_selection_notify_event_t& answer) {
    if (reading_->wanted.empty() || answer.target != reading_->wanted.back()) return;  // too late
    if (std::exchange(reading_->isAll, false)) {
        if (answer.property == XCB_NONE) return end(false);
        return chooseForms();
    }
    if (answer.property == XCB_NONE) {
        reading_->wanted.pop_back();  // promised, yet not kept
        return askNext();
    }
    auto text = takeTransfer();
    if (!text) return end(false);
    if (text->type == connection_.atom(Atom::inPieces)) {
        reading_->pieces.emplace();
    } else {
        add(*std::move(text));
    }
}

void Clipboard::chooseForms() {
    const auto list = propertyOf(connection_, window_, Atom::clipboardTransfer);
    reading_->wanted.clear();
    xcb_atom_t picture = XCB_NONE;
    for (const xcb_atom_t form : list.numbers().first(std::min(list.numbers().size(), mostForms))) {
        const std::string name = nameOf(connection_, form);
        if (name.starts_with(pictures)) {
            if (picture == XCB_NONE || name == usualPicture) picture = form;
        } else if (!isAboutIt(name)) {
            reading_->wanted.push_back(form);
        }
    }
    if (picture != XCB_NONE) reading_->wanted.push_back(picture);
    askNext();
}

/// Each piece follows when the one before has been taken; an empty one is the last.
void Clipboard::piece() {
    auto next = takeTransfer();
    if (!next) return end(false);
    if (next->bytes.empty()) {
        next->bytes = *std::exchange(reading_->pieces, std::nullopt);
        return add(*std::move(next));
    }
    *reading_->pieces += next->bytes;
    if (reading_->pieces->size() > mostBytes) return end(false);
    patience_ = connection_.loop().timer(longestAnswer, [this] { end(false); });
}

void Clipboard::add(LongText text) {
    const xcb_atom_t form = reading_->wanted.back();
    reading_->wanted.pop_back();
    reading_->size += text.bytes.size();
    if (reading_->size > mostBytes) return end(false);
    if (!text.bytes.empty()) {
        reading_->found.push_back(
            {.form = form, .type = text.type, .bytes = std::move(text.bytes)});
    }
    askNext();
}

std::optional<LongText> Clipboard::takeTransfer() {
    auto transfer = longTextOf(connection_, window_, Atom::clipboardTransfer, mostBytes);
    xcb_delete_property(connection_.xcb(), window_, connection_.atom(Atom::clipboardTransfer));
    xcb_flush(connection_.xcb());
    return transfer;
}

void Clipboard::end(bool isWhole) {
    patience_.cancel();
    if (!reading_) return;
    const Reading reading = *std::exchange(reading_, std::nullopt);
    reading.done(isWhole ? std::optional(reading.found) : std::nullopt);
}

void Clipboard::offer(Contents contents) {
    contents_ = std::move(contents);
    auto* xcb = connection_.xcb();
    xcb_set_selection_owner(xcb, contents_.empty() ? XCB_NONE : window_,
                            connection_.atom(Atom::clipboard), XCB_CURRENT_TIME);
    xcb_flush(xcb);
}

void Clipboard::serve(const xcb_selection_request_event_t& request) {
    const xcb_atom_t property = request.property == XCB_NONE ? request.target : request.property;
    xcb_selection_notify_event_t answer{.response_type = XCB_SELECTION_NOTIFY,
                                        .time = request.time,
                                        .requestor = request.requestor,
                                        .selection = request.selection,
                                        .target = request.target};
    answer.property = give(request, property) ? property : XCB_NONE;
    std::array<char, 32> bytes{};  // as long as any event
    static_assert(sizeof answer <= bytes.size());
    std::copy_n(reinterpret_cast<const char*>(&answer), sizeof answer, bytes.begin());
    xcb_send_event(connection_.xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    xcb_flush(connection_.xcb());
}

bool Clipboard::give(const xcb_selection_request_event_t& request, xcb_atom_t property) const {
    if (request.target == connection_.atom(Atom::targets)) {
        std::vector<std::uint32_t> forms{request.target};
        for (const Piece& each : contents_) forms.push_back(each.form);
        setProperty(connection_, request.requestor, property, XCB_ATOM_ATOM, forms);
        return true;
    }
    const auto known = std::ranges::find(contents_, request.target, &Piece::form);
    if (known == contents_.end()) return false;
    setTextProperty(connection_, request.requestor, property, known->type, known->bytes);
    return true;
}

}  // namespace quibbits::x11
