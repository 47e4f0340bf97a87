#include "atelier/Check.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <span>

#include "atelier/Form.h"
#include "atelier/Moods.h"
#include "atelier/Portrait.h"
#include "body/Sheets.h"
#include "codecs/Credits.h"
#include "codecs/Png.h"
#include "codecs/Xml.h"

namespace quibbits::atelier {
namespace {

namespace fs = std::filesystem;

constexpr int sideRow = 2;
constexpr std::uint32_t leastAlpha = 26;  // what is fainter counts as nothing
constexpr int mostHover = 2;              // pixels that a foot may lift in a still animation
constexpr std::array still{"Idle", "Sleep"};

/// Animations that creatures play often, and what is shown where a set has none.
constexpr std::array<std::pair<const char*, const char*>, 8> usual{{{"Walk", "Idle"},
                                                                    {"Sleep", "Idle"},
                                                                    {"Hop", "Idle"},
                                                                    {"Eat", "Pose"},
                                                                    {"Hurt", "Idle"},
                                                                    {"Faint", "Sleep"},
                                                                    {"Wake", "Idle"},
                                                                    {"Pose", "Idle"}}};

std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string bytesOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::optional<DecodedImage> pictureAt(const fs::path& path) {
    const std::string bytes = bytesOf(path);
    return decodePng(std::as_bytes(std::span(bytes)));
}

bool isVisible(const DecodedImage& picture, int x, int y) {
    return picture.colourAt(x, y) >> 24 >= leastAlpha;
}

/// The lowest visible row of a part of a picture, counted from the part's top; none in an empty
/// one.
struct Part {
    int x = 0, y = 0, width = 0, height = 0;
};
std::optional<int> lowestRow(const DecodedImage& picture, const Part& part) {
    for (int y = part.height - 1; y >= 0; --y) {
        for (int x = 0; x < part.width; ++x) {
            if (isVisible(picture, part.x + x, part.y + y)) return y;
        }
    }
    return std::nullopt;
}

std::vector<std::string> knownBases() {
    std::vector<std::string> bases;
    for (const Form& form : forms()) {
        bases.emplace_back(form.name);
        bases.push_back(std::string(form.name) + "-shiny");
    }
    // Names that begin with another one's come first.
    std::ranges::sort(bases, std::greater{}, &std::string::size);
    return bases;
}

class Judge {
public:
    Judge(const fs::path& folder, const fs::path& builtIn) : folder_(folder), builtIn_(builtIn) {}

    Judgement all() {
        std::map<std::string, std::set<std::string>> files;  // what is behind each base
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folder_, error)) {
            const std::string name = entry.path().filename().string();
            if (name == "credits.json") {
                credits();
            } else if (const auto base = baseOf(name)) {
                files[*base].insert(name.substr(base->size() + 1));
            } else {
                fault(name, "belongs to no creature, so nobody will see it");
            }
        }
        if (error)
            fault(folder_.string(), "cannot be read: " + error.message());
        else if (files.empty())
            fault(folder_.string(), "holds no sheet");
        for (const auto& [base, own] : files) judgeBase(base, own);
        std::ranges::sort(result_.faults);
        return std::move(result_);
    }

private:
    void fault(const std::string& where, const std::string& what) {
        result_.faults.push_back(where + ": " + what);
    }
    void note(const std::string& where, const std::string& what) {
        result_.notes.push_back(where + ": " + what);
    }

    static std::optional<std::string> baseOf(const std::string& file) {
        static const auto bases = knownBases();
        const auto found = std::ranges::find_if(
            bases, [&](const std::string& base) { return file.starts_with(base + "-"); });
        return found == bases.end() ? std::nullopt : std::optional(*found);
    }

    void credits() {
        if (!readCredits(bytesOf(folder_ / "credits.json"))) {
            fault("credits.json", "is no list of artists with every field, so none is shown");
        }
    }

    /// The set as the companion sees it: the folder before the built-in one.
    fs::path place(const std::string& file) const {
        const auto own = folder_ / file;
        return fs::exists(own) ? own : builtIn_ / file;
    }

    void judgeBase(const std::string& base, const std::set<std::string>& own) {
        const std::string description = base + "-anim.xml";
        const auto events = xmlEvents(bytesOf(place(description)));
        const bool isOwn = own.contains("anim.xml");
        if (!isWhole(events)) {
            return fault(description, isOwn ? "is no whole XML document"
                                            : "is missing, so its pictures have no timing");
        }
        const auto data = AnimData::parse(events);
        entries(base, data, {.areAll = isOwn, .own = own});
        pictures(base, data, own);
        if (isOwn) missing(base, data);
    }

    struct Scope {
        bool areAll = false;  // the description is the folder's own
        const std::set<std::string>& own;
    };

    void entries(const std::string& base, const AnimData& data, const Scope& scope) {
        if (scope.areAll && !data.anims.contains("Idle")) {
            fault(base + "-anim.xml", "has no \"Idle\", which everything falls back to");
        }
        for (const auto& name : data.order) {
            const std::string file = lowered(name) + ".png";
            if (!scope.areAll && !scope.own.contains(file)) continue;
            ++result_.animations;
            const auto& info = data.anims.at(name);
            const std::string where = base + " " + name;
            if (info.copyOf) {
                const auto target = data.anims.find(*info.copyOf);
                if (target == data.anims.end())
                    fault(where, "borrows from " + *info.copyOf + ", which is not there");
                else if (target->second.copyOf)
                    fault(where, "borrows from " + *info.copyOf + ", which borrows itself");
            } else if (info.durations.empty()) {
                fault(where, "has no \"Duration\", so it cannot be played");
            } else {
                sheet(base, name, data);
            }
        }
    }

    void sheet(const std::string& base, const std::string& name, const AnimData& data) {
        const auto& info = data.anims.at(name);
        const std::string file = base + "-" + lowered(name) + ".png";
        if (!fs::exists(place(file))) {
            return fault(file, "is missing, so " + name + " is not played");
        }
        const auto picture = pictureAt(place(file));
        if (!picture) return fault(file, "is no PNG picture that can be read");
        const int frames = static_cast<int>(info.durations.size());
        if (picture->width % frames != 0) {
            return fault(file, "is " + std::to_string(picture->width) + " pixels wide, which " +
                                   std::to_string(frames) + " equal frames cannot fill");
        }
        if (info.height < 1) return fault(base + " " + name, "has no \"FrameHeight\"");
        if (picture->height % info.height != 0) {
            return fault(file, "is " + std::to_string(picture->height) +
                                   " pixels high, which rows of " + std::to_string(info.height) +
                                   " cannot fill");
        }
        const int rows = picture->height / info.height;
        if (rows > directionCount) {
            return fault(file, "has " + std::to_string(rows) + " rows; there are 8 directions");
        }
        if (rows != 1 && rows != directionCount) {
            note(file, "has " + std::to_string(rows) +
                           " rows; with 8 it can be seen from every side, and 1 is the side view");
        }
        feet(base, name, {.picture = *picture, .info = info, .rows = rows});
    }

    struct Sheet {
        const DecodedImage& picture;
        const AnimData::Info& info;
        int rows = 1;
    };

    void feet(const std::string& base, const std::string& name, const Sheet& sheet) {
        const std::string file = base + "-" + lowered(name) + ".png";
        const int y = sheet.rows > sideRow ? sideRow * sheet.info.height : 0;
        const auto line = lowestRow(sheet.picture, {0, y, sheet.picture.width, sheet.info.height});
        if (!line) return fault(file, "shows nothing from the side");
        const double foot = *line + 1 - sheet.info.height / 2.0;
        footLines_[{base, name}] = foot;
        if (name == "Wake") wakeFeet(base);
        if (name == "Idle") wakeFeet(base);
        if (std::ranges::find(still, name) == still.end() || isFloating(base)) return;
        const int frames = static_cast<int>(sheet.info.durations.size());
        const int width = sheet.picture.width / frames;
        for (int i = 0; i < frames; ++i) {
            const auto low = lowestRow(sheet.picture, {i * width, y, width, sheet.info.height});
            if (!low) {
                fault(file, "frame " + std::to_string(i + 1) + " is empty");
            } else if (*line - *low > mostHover) {
                fault(file, "frame " + std::to_string(i + 1) + " hovers " +
                                std::to_string(*line - *low) +
                                " pixels above the line that its lowest frame stands on");
            }
        }
    }

    /// One who wakes is stood on the feet of Idle.
    void wakeFeet(const std::string& base) {
        const auto idle = footLines_.find({base, "Idle"});
        const auto wake = footLines_.find({base, "Wake"});
        if (idle == footLines_.end() || wake == footLines_.end()) return;
        if (idle->second == wake->second) return;
        fault(base + "-wake.png",
              "stands " + std::to_string(static_cast<int>(std::abs(idle->second - wake->second))) +
                  " pixels off the feet of Idle, so the creature jumps as it wakes");
    }

    static bool isFloating(const std::string& base) {
        const Form* form = formNamed(base.substr(0, base.find("-shiny")));
        return form && (form->build & floating) != 0;
    }

    /// What lies in the folder and is no animation of the description.
    void pictures(const std::string& base, const AnimData& data, const std::set<std::string>& own) {
        std::set<std::string> known{"anim.xml"};
        for (const auto& name : data.order) known.insert(lowered(name) + ".png");
        for (const auto& rest : own) {
            const std::string file = base + "-" + rest;
            if (known.contains(rest)) continue;
            if (rest == "eathold.png") {
                if (!pictureAt(folder_ / file)) fault(file, "is no PNG picture that can be read");
            } else if (rest.starts_with("face-")) {
                portrait(file, rest.substr(5));
            } else {
                fault(file, "is no animation of its description, so nobody will see it");
            }
        }
    }

    void portrait(const std::string& file, const std::string& rest) {
        const bool isMood = std::ranges::any_of(
            moods, [&](const MoodName& mood) { return rest == std::string(mood.name) + ".png"; });
        if (!isMood) return fault(file, "is no mood that a portrait can show");
        const auto picture = pictureAt(folder_ / file);
        if (!picture) return fault(file, "is no PNG picture that can be read");
        if (picture->width != portraitSize || picture->height != portraitSize) {
            fault(file, "is " + std::to_string(picture->width) + " by " +
                            std::to_string(picture->height) + " pixels; portraits are " +
                            std::to_string(portraitSize) + " by " + std::to_string(portraitSize));
        }
    }

    void missing(const std::string& base, const AnimData& data) {
        for (const auto& [name, instead] : usual) {
            if (!data.anims.contains(name)) {
                note(base, std::string("has no ") + name + "; " + instead + " stands in");
            }
        }
    }

    const fs::path& folder_;
    const fs::path& builtIn_;
    Judgement result_;
    std::map<std::pair<std::string, std::string>, double> footLines_;
};

}  // namespace

Judgement judge(const fs::path& folder, const fs::path& builtIn) {
    return Judge(folder, builtIn).all();
}

}  // namespace quibbits::atelier
