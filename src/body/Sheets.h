#pragma once
// What one form of a creature can play. A set is an XML description and an image per animation; the
// images have a row for each of up to eight directions. AnimData reads the description, an Anim is
// one row cut out with its timing and foot line, and Sheets is everything together. Values are made
// once, never change and share their pixels.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Resources.h"

namespace quibbits {

/// A sheet's description, as read.
struct AnimData {
    struct Info {
        int height = 0;                     // pixels of one row; 0 when absent or unreadable
        std::vector<int> durations;         // one a frame, in ticks of 1/60 second
        std::optional<std::string> copyOf;  // borrows image and timing of another entry
    };
    std::map<std::string, Info, std::less<>> anims;
    std::vector<std::string> order;  // names in document order; a later entry of a name wins

    /// Reads the description of a sheet base. One that is missing has no entries; a broken one
    /// keeps what stood before the fault, and one without end its first 1024 entries.
    static AnimData read(const Resources& resources, std::string_view base);
    static AnimData parse(const std::vector<XmlEvent>& events);

    /// An entry with the name under which its image and timing stand: its own, or that of the
    /// entry that it borrows from, one step far.
    struct Resolved {
        std::string name;
        const Info* info = nullptr;
    };
    std::optional<Resolved> resolve(std::string_view name) const;
};

/// One animation: frames side by side in a strip, and how long each is shown.
struct Anim {
    Image image;
    /// What to show in turn, each for the same time, as parts of the strip in unit coordinates. A
    /// frame that lasts longer stands several times in a row.
    std::vector<Rect> frames;
    Size frameSize;        // whole pixels
    Seconds duration = 0;  // of one run
    double feet = 0;       // pixels from the frame's centre down to the foot line
    double height = 0;     // pixels from the highest to the lowest visible row

    /// Cuts a strip into as many frames as there are ticks. The foot line is the lower edge of the
    /// lowest visible row of all frames together, unless it is given.
    static Anim fromStrip(Image strip, const std::vector<int>& ticks,
                          std::optional<double> feet = std::nullopt);
    bool isPlayable() const { return !frames.empty() && frameSize.width >= 1; }
};

struct NamedAnim {
    std::string name;
    Anim anim;
};

/// Names of animations for each part that a species gives them, best first.
using AnimRoles = std::map<std::string, std::vector<std::string>, std::less<>>;

class Sheets {
public:
    /// Loads a set. What it lacks falls back along a chain of animations to "Idle"; a set without
    /// even that shows nothing.
    Sheets(const Resources& resources, std::string base, AnimRoles roles);

    Anim walk, idle, sleep, hop, charge, shock, pose, hurt, crash, eat, faint, wake, nod, leap,
        tumble, twirl, pain, stretch, dance;
    Anim lookUp, lookDown;        // one still frame each
    bool canEat = false;          // there is a real eating animation
    std::optional<Anim> eatHold;  // held while something big is eaten
    std::vector<NamedAnim> all;   // every animation with an image, in document order

    const std::string& species() const { return base_; }
    const AnimData& data() const { return data_; }

    /// The animation of that name, or nothing.
    const Anim* anim(std::string_view name) const;
    /// The first animation that the species names for the role and the set holds.
    const std::string* roleName(std::string_view role) const;
    const Anim* role(std::string_view role) const;
    /// One row of an animation; row 0 is the front. Decoded at each call.
    std::optional<Anim> row(const Resources& resources, std::string_view name, int row) const;
    /// The animation from up to eight sides.
    std::vector<Anim> directions(const Resources& resources, std::string_view name) const;

    /// Cuts a row out of a set: a row that the image does not have gives row 0, and an entry or
    /// image that is missing gives nothing.
    static std::optional<Anim> sheet(const Resources& resources, std::string_view base,
                                     const AnimData& data, std::string_view name, int row,
                                     std::optional<double> feet = std::nullopt);

private:
    std::string base_;
    AnimData data_;
    AnimRoles roles_;
};

}  // namespace quibbits
