#include "body/Sheets.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <initializer_list>
#include <numeric>
#include <unordered_map>

namespace quibbits {

namespace {

constexpr int sideRow = 2;  // the side view, facing right

/// The longest playback list that is worth having: more than a minute at a frame a tick. A sheet
/// that asks for more is played in coarser steps.
constexpr std::int64_t mostFrames = 4096;

std::string imageName(std::string_view base, std::string_view anim) {
    std::string name(base);
    name += '-';
    for (const char c : anim)
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

struct OpaqueRows {
    int highest = 0;
    int lowest = 0;
};

OpaqueRows opaqueRows(const Image& strip) {
    constexpr Argb leastAlpha = 26;
    const auto visible = [&](int y) {
        for (int x = 0; x < strip.width(); ++x) {
            if (strip.at(x, y) >> 24 >= leastAlpha) return true;
        }
        return false;
    };
    int lowest = strip.height() - 1;
    while (lowest >= 0 && !visible(lowest)) --lowest;
    if (lowest < 0) return {0, strip.height() - 1};
    int highest = 0;
    while (!visible(highest)) ++highest;
    return {highest, lowest};
}

int rowCount(const AnimData::Info& info, int imageHeight) {
    return info.height >= 1 ? imageHeight / info.height : imageHeight;
}

/// The picture of one row; the whole image where its rows have no height.
Image strip(const Resources& resources, const std::string& name, const AnimData::Info& info,
            int row, Resources::PixelSize size) {
    if (row >= std::max(rowCount(info, size.height), 1)) row = 0;
    const int height = std::min(size.height, info.height);
    if (height < 1) return resources.imageRows(name, 0, size.height);
    return resources.imageRows(name, row * height, height);
}

std::optional<Anim> cut(const Resources& resources, std::string_view base,
                        const AnimData::Resolved& entry, int row, std::optional<double> feet) {
    const std::string file = imageName(base, entry.name);
    const auto size = resources.imageSize(file);
    if (!size) return std::nullopt;
    Image picture = strip(resources, file, *entry.info, row, *size);
    if (!picture) return std::nullopt;
    return Anim::fromStrip(std::move(picture), entry.info->durations, feet);
}

}  // namespace

Anim Anim::fromStrip(Image strip, const std::vector<int>& ticks, std::optional<double> feet) {
    Anim anim;
    const int count = std::max(static_cast<int>(ticks.size()), 1);
    const double share = 1.0 / count;

    std::int64_t step = 0;
    std::int64_t total = 0;
    for (const int tick : ticks) {
        step = std::gcd(step, static_cast<std::int64_t>(tick));
        total += tick;
    }
    const std::int64_t coarsest = (total + mostFrames - 1) / mostFrames;
    step = std::max({step, std::int64_t{1}, coarsest});

    for (std::size_t i = 0; i < ticks.size() && anim.frames.size() < mostFrames; ++i) {
        const Rect frame{static_cast<double>(i) * share, 0, share, 1};
        const auto times = static_cast<std::size_t>(std::max<std::int64_t>(ticks[i] / step, 1));
        const std::size_t room = mostFrames - anim.frames.size();
        anim.frames.insert(anim.frames.end(), std::min(times, room), frame);
    }
    anim.duration = static_cast<double>(total) / 60.0;
    anim.frameSize = {static_cast<double>(strip.width() / count),
                      static_cast<double>(strip.height())};
    const auto [highest, lowest] = opaqueRows(strip);
    anim.height = lowest - highest + 1;
    anim.feet = feet.value_or(lowest + 1 - strip.height() / 2.0);
    anim.image = std::move(strip);
    return anim;
}

std::optional<Anim> Sheets::sheet(const Resources& resources, std::string_view base,
                                  const AnimData& data, std::string_view name, int row,
                                  std::optional<double> feet) {
    const auto resolved = data.resolve(name);
    if (!resolved) return std::nullopt;
    return cut(resources, base, *resolved, row, feet);
}

namespace {

/// Cuts the side views of one set, each image once however many animations share it.
class SideViews {
public:
    SideViews(const Resources& resources, const std::string& base, const AnimData& data)
        : resources_(resources), base_(base), data_(data) {}

    const Anim* find(std::string_view name) {
        const auto resolved = data_.resolve(name);
        if (!resolved) return nullptr;
        auto [entry, isNew] = views_.try_emplace(resolved->name);
        if (isNew) entry->second = cut(resources_, base_, *resolved, sideRow, std::nullopt);
        return entry->second ? &*entry->second : nullptr;
    }

    /// The first of the chain that there is, else "Idle", else a picture of nothing.
    Anim first(std::initializer_list<std::string_view> chain) {
        for (const auto name : chain) {
            if (const Anim* anim = find(name)) return *anim;
        }
        if (const Anim* idle = find("Idle")) return *idle;
        return Anim::fromStrip(Image::fromArgb(1, 1, {0}), {1});
    }

private:
    const Resources& resources_;
    const std::string& base_;
    const AnimData& data_;
    std::unordered_map<std::string, std::optional<Anim>> views_;
};

/// The first frame of a row of the "Idle" sheet itself.
std::optional<Anim> look(const Resources& resources, const std::string& base, const AnimData& data,
                         int row) {
    const auto entry = data.anims.find("Idle");
    if (entry == data.anims.end()) return std::nullopt;
    const auto& info = entry->second;
    const std::string file = imageName(base, "Idle");
    const auto size = resources.imageSize(file);
    if (!size) return std::nullopt;
    const Image picture = strip(resources, file, info, row, *size);
    const int count = std::max(static_cast<int>(info.durations.size()), 1);
    Image frame = picture.cropped(0, 0, picture.width() / count, picture.height());
    if (!frame) return std::nullopt;
    constexpr int ticks = 10;
    return Anim::fromStrip(std::move(frame), {info.durations.empty() ? ticks : info.durations[0]});
}

}  // namespace

Sheets::Sheets(const Resources& resources, std::string base, AnimRoles roles)
    : base_(std::move(base)), data_(AnimData::read(resources, base_)), roles_(std::move(roles)) {
    SideViews views(resources, base_, data_);
    walk = views.first({"Walk"});
    idle = views.first({"Idle"});
    sleep = views.first({"Sleep", "Idle"});
    hop = views.first({"Hop", "Idle"});
    charge = views.first({"Charge", "Idle"});
    shock = views.first({"Shock", "Shoot", "Attack"});
    pose = views.first({"Pose", "Idle"});
    hurt = views.first({"Hurt", "Idle"});
    crash = views.first({"HitGround", "Hurt", "Idle"});
    eat = views.first({"Eat", "Pose", "Idle"});
    faint = views.first({"Faint", "Sleep", "Idle"});
    wake = views.first({"Wake", "Idle"});
    wake.feet = idle.feet;  // so that the body does not shift when it wakes
    nod = views.first({"Nod", "Pose", "Idle"});
    leap = views.first({"LeapForth", "Hop", "Idle"});
    tumble = views.first({"Tumble", "Rotate", "Idle"});
    twirl = views.first({"Rotate", "Idle"});
    pain = views.first({"Pain", "Hurt", "Idle"});
    stretch = views.first({"DeepBreath", "Pose", "Idle"});
    dance = views.first({"Double", "Idle"});

    constexpr int upRow = 3;
    constexpr int downRow = 1;
    lookUp = look(resources, base_, data_, upRow).value_or(idle);
    lookDown = look(resources, base_, data_, downRow).value_or(idle);

    canEat = views.find("Eat") != nullptr;
    if (Image held = resources.image(base_ + "-eathold")) {
        eatHold = Anim::fromStrip(std::move(held), {10});
    }
    for (const auto& name : data_.order) {
        if (const Anim* anim = views.find(name)) all.push_back({name, *anim});
    }
}

const Anim* Sheets::anim(std::string_view name) const {
    const auto found = std::ranges::find(all, name, &NamedAnim::name);
    return found == all.end() ? nullptr : &found->anim;
}

const std::string* Sheets::roleName(std::string_view role) const {
    const auto names = roles_.find(role);
    if (names == roles_.end()) return nullptr;
    for (const auto& name : names->second) {
        if (anim(name)) return &name;
    }
    return nullptr;
}

const Anim* Sheets::role(std::string_view role) const {
    const std::string* name = roleName(role);
    return name ? anim(*name) : nullptr;
}

std::optional<Anim> Sheets::row(const Resources& resources, std::string_view name, int row) const {
    return sheet(resources, base_, data_, name, row);
}

namespace {

/// Reads a picture once, however many pieces of it are asked for.
class ReadOnce final : public Resources {
public:
    explicit ReadOnce(const Resources& behind) : behind_(behind) {}
    std::optional<PixelSize> imageSize(std::string_view name) const override {
        const Image& whole = read(name);
        if (!whole) return std::nullopt;
        return PixelSize{whole.width(), whole.height()};
    }
    Image imageRows(std::string_view name, int first, int count) const override {
        const Image& whole = read(name);
        return whole.cropped(0, first, whole.width(), std::min(count, whole.height() - first));
    }
    std::optional<std::vector<XmlEvent>> xml(std::string_view name) const override {
        return behind_.xml(name);
    }

private:
    const Image& read(std::string_view name) const {
        const auto [entry, isNew] = read_.try_emplace(std::string(name));
        if (isNew) entry->second = behind_.image(name);
        return entry->second;
    }

    const Resources& behind_;
    mutable std::unordered_map<std::string, Image> read_;
};

}  // namespace

std::vector<Anim> Sheets::directions(const Resources& resources, std::string_view name) const {
    constexpr int most = 8;
    const ReadOnce once(resources);
    std::vector<Anim> sides;
    for (int r = 0; r < most; ++r) {
        if (auto side = row(once, name, r)) sides.push_back(std::move(*side));
    }
    return sides;
}

}  // namespace quibbits
