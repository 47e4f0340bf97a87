#include "creature/Voice.h"

#include <array>

namespace quibbits {

namespace {

struct MomentRow {
    Moment moment;
    std::string_view raw;
    std::array<std::string_view, 3> lines;  // the unused ones are empty

    constexpr std::size_t count() const {
        std::size_t n = 0;
        while (n < lines.size() && !lines[n].empty()) ++n;
        return n;
    }
};

constexpr std::array<MomentRow, momentCount> rows{{
    {Moment::curious,
     "curious",
     {"Hm? What's that? What's that?", "Ooh? What's this?", "Who's there?"}},
    {Moment::recognized,
     "recognized",
     {"Oh! It's you! ♥", "It's you! Hello!", "Hehe, I knew it was you!"}},
    {Moment::startled, "startled", {"Eek! You scared me!", "Whoa! Not so fast!"}},
    {Moment::petted, "petted", {"Hehe, that tickles!", "More, more! ♥", "I like you too!"}},
    {Moment::pettedSleepy, "pettedSleepy", {"Mm… so sleepy…", "That's nice… zzz…"}},
    {Moment::pickedUp, "pickedUp", {"Wheee! Up we go!", "Look how high I am!"}},
    {Moment::pickedUpWorried,
     "pickedUpWorried",
     {"Careful! Don't drop me again!", "Hold on tight, okay?"}},
    {Moment::droppedHard, "droppedHard", {"Ow ow ow… that really hurt…", "Why'd you drop me?!"}},
    {Moment::dizzy, "dizzy", {"The world is spinning…", "Whoa… everything's going round…"}},
    {Moment::askBerry, "askBerry", {"I'm hungry… got a berry?", "My tummy's rumbling!"}},
    {Moment::ateFavourite,
     "ateFavourite",
     {"My favourite!! You're the best!", "This one's the best kind!"}},
    {Moment::ate, "ate", {"Yum! That hit the spot!", "Munch munch… delicious!"}},
    {Moment::ateDisliked,
     "ateDisliked",
     {"…Bleh. Thanks, I guess.", "Not my favourite… but thank you."}},
    {Moment::full, "full", {"I'm full! I couldn't eat another bite.", "I'm stuffed! Maybe later?"}},
    {Moment::woke, "woke", {"Mm… that was a good nap!", "*yawn* What did I miss?"}},
    {Moment::userBack, "userBack", {"You're back! I missed you!", "Welcome back!"}},
    {Moment::itemNear, "itemNear", {"Ooh! Is that for me?", "Is that a berry?!"}},
    {Moment::offline, "offline", {"Huh? The internet's gone…", "Uh oh… we're offline."}},
    {Moment::online, "online", {"Phew, it's back!", "The internet's back!"}},
    {Moment::hot, "hot", {"It's so hot in here…", "Phew… your Mac's burning up."}},
    {Moment::deleted, "deleted", {"Gone! Did you see that?", "All tidy now!"}},
    {Moment::celebrate, "celebrate", {"We did it! Woohoo!", "Great job, partner!"}},
    {Moment::failed, "failed", {"Ugh… let's try again.", "Oof… that didn't work."}},
    {Moment::done, "done", {"All done! Great work!", "Finished! Nice one!"}},
    {Moment::hello, "hello", {"Hi there!", "Hello, partner!"}},
    {Moment::playing, "playing", {"Watch this!", "Hehe, this is fun!"}},
    {Moment::morning, "morning", {"Good morning! Ready for today?"}},
}};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].moment) != i || rows[i].count() == 0) return false;
    }
    return true;
}
static_assert(inOrder());

constexpr std::array<std::string_view, faceCount> faceNames{
    "happy",   "joyous",    "angry", "crying",     "pain",     "dizzy",
    "worried", "surprised", "sigh",  "determined", "inspired",
};

void replaceAll(std::string& text, std::string_view what, const std::string& with) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

}  // namespace

std::string_view rawValue(Face face) {
    return faceNames[static_cast<std::size_t>(face)];
}
std::string_view rawValue(Moment moment) {
    return rows[static_cast<std::size_t>(moment)].raw;
}

std::span<const std::string_view> baseLines(Moment moment) {
    const MomentRow& row = rows[static_cast<std::size_t>(moment)];
    return std::span(row.lines).first(row.count());
}

std::optional<std::string> pickLine(const VoiceTable& voice, Moment moment, const Speaker& speaker,
                                    Random& random) {
    const auto own = voice.find(moment);
    const std::span<const std::string_view> lines =
        own != voice.end() ? std::span<const std::string_view>(own->second) : baseLines(moment);
    if (lines.empty()) return std::nullopt;
    std::string line(random.pick(lines));
    replaceAll(line, "{name}", speaker.name);
    replaceAll(line, "{cry}", speaker.cry);
    return line;
}

}  // namespace quibbits
