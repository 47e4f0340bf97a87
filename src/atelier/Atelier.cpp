#include "atelier/Atelier.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <fstream>
#include <functional>
#include <thread>

#include "atelier/Portrait.h"
#include "codecs/Png.h"

namespace quibbits::atelier {
namespace {

namespace fs = std::filesystem;

using Job = std::function<bool()>;

/// Runs jobs on all cores. Each writes files of its own, so their order leaves no trace.
bool runAll(const std::vector<Job>& jobs, const Progress& progress) {
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> good = true;
    const auto asked = std::this_thread::get_id();
    const auto work = [&] {
        for (std::size_t i = next++; i < jobs.size(); i = next++) {
            if (progress && std::this_thread::get_id() == asked) {
                progress(static_cast<double>(i) / static_cast<double>(jobs.size()));
            }
            if (!jobs[i]()) good = false;
        }
    };
    std::vector<std::jthread> threads;
    for (unsigned i = 1; i < std::max(1U, std::thread::hardware_concurrency()); ++i) {
        threads.emplace_back(work);
    }
    work();
    threads.clear();
    return good;
}

std::string lowered(std::string_view name) {
    std::string lower{name};
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

/// One form in work: what its jobs share, and the entries they fill in.
struct Commission {
    const Form& form;
    Paints paints;
    std::vector<Animation> animations;
    GroundShift shift{};
    std::vector<SheetEntry> entries;
};

/// Both coats of a file: `base` for the plain one and `base`-shiny.
template <typename Paint>
bool writeBoth(const fs::path& folder, const Commission& work, const std::string& suffix,
               Paint paint) {
    const std::string base{work.form.name};
    const Image plain = paint(work.paints.plain);
    const Image shiny = paint(work.paints.shiny);
    const auto files = encodePngs({plain.width, plain.height}, {plain.argb, shiny.argb});
    return writeBytes(folder / (base + suffix), files[0]) &&
           writeBytes(folder / (base + "-shiny" + suffix), files[1]);
}

/// A creature that wakes keeps the feet it has in Idle, counted from the middle of the cell. So the
/// two share one cell.
std::string_view cellPartner(std::string_view name) {
    if (name == "Wake") return "Idle";
    if (name == "Idle") return "Wake";
    return {};
}

bool drawSheet(const fs::path& folder, Commission& work, std::size_t index) {
    const auto& animation = work.animations[index];
    const auto drawn = drawAnimation(work.form, work.shift, animation);
    CellBox box = boxAround(drawn);
    const auto partner =
        std::ranges::find(work.animations, cellPartner(animation.name), &Animation::name);
    if (partner != work.animations.end()) {
        box = united(box, boxAround(drawAnimation(work.form, work.shift, *partner)));
    }
    work.entries[index] = {std::string{animation.name}, box.height, animation.ticks};
    return writeBoth(folder, work, "-" + lowered(animation.name) + ".png",
                     [&](const Palette& palette) { return layOut(drawn, box, palette); });
}

bool drawPortraits(const fs::path& folder, const Commission& work) {
    return std::ranges::all_of(moods, [&](const MoodName& entry) {
        const auto drawing = drawPortrait(work.form, entry.mood);
        return writeBoth(
            folder, work, "-face-" + std::string{entry.name} + ".png",
            [&](const Palette& palette) { return paintPortrait(drawing, entry.mood, palette); });
    });
}

bool drawEatHold(const fs::path& folder, const Commission& work) {
    const auto drawn = drawAnimation(work.form, work.shift, chewing());
    const auto box = boxAround(drawn);
    return writeBoth(folder, work, "-eathold.png", [&](const Palette& palette) {
        return cut(drawn[facingRight].front(), box, palette);
    });
}

bool writeText(const fs::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    return file.flush().good();
}

bool writeDescriptions(const fs::path& folder, const Commission& work) {
    const std::string base{work.form.name};
    const std::string text = describe(work.entries);
    return writeText(folder / (base + "-anim.xml"), text) &&
           writeText(folder / (base + "-shiny-anim.xml"), text);
}

}  // namespace

bool writePng(const fs::path& path, const Image& image) {
    return writeBytes(path, encodePng({image.width, image.height}, image.argb));
}

bool writeBytes(const fs::path& path, std::span<const std::byte> bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return !bytes.empty() && file.flush().good();
}

bool writeSet(const fs::path& folder, std::span<const Form> chosen, const Progress& progress) {
    std::error_code error;
    fs::create_directories(folder, error);
    std::vector<Commission> commissions;
    for (const auto& form : chosen) {
        commissions.push_back({form, form.paints(), animationsOf(form.build), {}, {}});
    }

    std::vector<Job> standing;
    std::vector<Job> drawing;
    for (auto& work : commissions) {
        work.entries.resize(work.animations.size());
        standing.emplace_back([&work] {
            work.shift = groundShiftOf(work.form);
            return true;
        });
        for (std::size_t i = 0; i < work.animations.size(); ++i) {
            drawing.emplace_back([&folder, &work, i] { return drawSheet(folder, work, i); });
        }
        drawing.emplace_back([&folder, &work] { return drawPortraits(folder, work); });
        if (work.form.holdsFoodStill) {
            drawing.emplace_back([&folder, &work] { return drawEatHold(folder, work); });
        }
    }
    return runAll(standing, {}) && runAll(drawing, progress) &&
           std::ranges::all_of(commissions, [&](const Commission& work) {
               return writeDescriptions(folder, work);
           });
}

}  // namespace quibbits::atelier
