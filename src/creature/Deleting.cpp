// Destroying files that the user has given. Whatever befalls the creature meanwhile, they go: what
// it can no longer strike is moved to the Trash without a show.

#include <algorithm>
#include <utility>

#include "creature/Companion.h"

namespace quibbits {

bool Companion::canAttack() const {
    return isOn(Setting::thunderbolt) && presence_.isReady() && habitat_.fx;
}

void Companion::strike(const std::vector<std::string>& paths, const FilePoints& points) {
    if (canAttack()) return attack(paths, points);
    trashAtOnce(paths);
}

void Companion::zap(const std::vector<std::string>& paths) {
    if (canAttack()) attack(paths, {});
}

void Companion::trashAtOnce(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) computer().files.moveToTrash(path);
}

void Companion::attack(const std::vector<std::string>& paths, const FilePoints& points) {
    const bool begins = !attack_;
    if (begins) breakOff();
    for (const std::string& path : paths) {
        if (std::ranges::find(doomed_, path, &Doomed::path) != doomed_.end()) continue;
        const auto told = points.find(path);
        doomed_.push_back(
            {.path = path,
             .place = told == points.end() ? std::nullopt : std::optional(told->second)});
    }
    if (!begins) return;
    attack_ = pet_.begin([this] { trashTheRest(); });
    takeStand([this] { strikeNext(); });
}

void Companion::strikeNext() {
    const auto next = std::ranges::find(doomed_, false, &Doomed::launched);
    if (next != doomed_.end()) {
        const Doomed file = *next;
        return strikeFile(file.path, file.place ? file.place : pet_.stage().iconCenter(file.path),
                          [this] { strikeNext(); });
    }
    boast([this] {
        const bool more = std::ranges::find(doomed_, false, &Doomed::launched) != doomed_.end();
        if (more) return strikeNext();
        attack_.end();
        think();
    });
}

void Companion::launch(const std::string& path) {
    const auto file = std::ranges::find(doomed_, path, &Doomed::path);
    if (file != doomed_.end()) file->launched = true;
}

void Companion::destroy(const std::string& path) {
    if (std::erase_if(doomed_, [&](const Doomed& file) { return file.path == path; }) == 0) return;
    if (computer().files.moveToTrash(path))
        gainEXP(0.1);
    else
        feelIfShown(Face::sigh, {.seconds = 2.5});
}

void Companion::trashTheRest() {
    std::vector<std::string> rest;
    std::erase_if(doomed_, [&](const Doomed& file) {
        if (!file.launched) rest.push_back(file.path);
        return !file.launched;
    });
    trashAtOnce(rest);
}

void Companion::finishDeleting() {
    for (const Doomed& file : std::exchange(doomed_, {})) computer().files.moveToTrash(file.path);
}

}  // namespace quibbits
