#include "simulator/Film.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>

#include "raster/Canvas.h"

namespace quibbits {

namespace {

// The backdrop: an evening sky, so that light and dark things are both readable on it.
constexpr Color sky{0.20, 0.33, 0.52, 1};
constexpr Color horizon{0.62, 0.72, 0.78, 1};
constexpr std::uint32_t dockColor = 0x2b3340;
constexpr std::uint32_t windowColor = 0xf4f4f1;
constexpr std::uint32_t titleColor = 0xd5d6d8;
constexpr std::uint32_t iconColor = 0xdde6ee;
constexpr double titleHeight = 26;

std::uint32_t mixed(double share) {
    const auto part = [share](double a, double b) {
        return static_cast<std::uint32_t>(std::lround((a + (b - a) * share) * 255));
    };
    return part(sky.red, horizon.red) << 16 | part(sky.green, horizon.green) << 8 |
           part(sky.blue, horizon.blue);
}

/// A premultiplied colour over an opaque one.
std::uint32_t laidOver(std::uint32_t top, std::uint32_t below) {
    const std::uint32_t clear = 255 - (top >> 24);
    if (clear == 255) return below;
    if (clear == 0) return top & 0xffffff;
    std::uint32_t result = 0;
    for (const int shift : {16, 8, 0}) {
        const std::uint32_t under = (below >> shift) & 0xff;
        const std::uint32_t sum = ((top >> shift) & 0xff) + (under * clear + 127) / 255;
        result |= std::min(sum, 255u) << shift;
    }
    return result;
}

/// The upper left part of a picture, in another size; black where there is none.
std::vector<std::uint32_t> inSize(std::span<const std::uint32_t> pixels, PngInfo from, PngInfo to) {
    std::vector<std::uint32_t> fitted;
    for (int y = 0; y < to.height; ++y) {
        const int shared = y < from.height ? std::min(from.width, to.width) : 0;
        const auto row = pixels.begin() + static_cast<std::ptrdiff_t>(y) * from.width;
        if (shared > 0) fitted.insert(fitted.end(), row, row + shared);
        fitted.resize(fitted.size() + static_cast<std::size_t>(to.width - shared));
    }
    return fitted;
}

}  // namespace

const std::vector<std::uint32_t>& Camera::shoot(SimulatedComputer& computer) {
    const auto screen = computer.screens.main().value_or(Screen{{0, 0, 1, 1}, {}, 1});
    const PixelRect whole{0, 0, static_cast<int>(std::lround(screen.frame.width * screen.scale)),
                          static_cast<int>(std::lround(screen.frame.height * screen.scale))};
    shown_ = area_ ? area_->intersected(whole) : whole;
    if (shown_.isEmpty()) shown_ = whole;
    size_ = {shown_.width, shown_.height};
    pixels_.resize(static_cast<std::size_t>(shown_.width) *
                   static_cast<std::size_t>(shown_.height));
    for (int y = 0; y < shown_.height; ++y) {
        const double share = static_cast<double>(y + shown_.y) / whole.height;
        std::fill_n(pixels_.begin() + static_cast<std::ptrdiff_t>(y) * shown_.width, shown_.width,
                    mixed(share));
    }
    drawDesktop(computer);
    for (SimulatedPanel* panel : computer.shownPanels()) {
        if (panel->isVisible()) drawPanel(*panel, computer);
    }
    if (const auto& drag = computer.carried()) drawCarried(*drag, computer.pointer.place, screen);
    return pixels_;
}

void Camera::drawDesktop(const SimulatedComputer& computer) {
    const auto screen = computer.screens.main();
    if (!screen) return;
    if (computer.fileBrowser.icons) {
        for (const DesktopIcon& icon : *computer.fileBrowser.icons) {
            fill(icon.frame.inset(icon.frame.width / 5), iconColor, *screen);
        }
    }
    const auto& windows = computer.windows.windows;
    for (auto it = windows.rbegin(); it != windows.rend(); ++it) {
        if (!it->info.frame) continue;
        Rect frame = *it->info.frame;
        fill(frame, windowColor, *screen);
        const double title = std::min(titleHeight, frame.height);
        fill({frame.x, frame.maxY() - title, frame.width, title}, titleColor, *screen);
    }
    for (const Rect& panel : computer.dock.frames) fill(panel, dockColor, *screen);
}

PixelRect Camera::pixels(Rect frame, const Screen& screen) {
    const double s = screen.scale;
    const auto pixel = [](double v) { return static_cast<int>(std::lround(v)); };
    return {pixel(frame.x * s), pixel((screen.frame.height - frame.maxY()) * s),
            pixel(frame.width * s), pixel(frame.height * s)};
}

void Camera::fill(Rect frame, std::uint32_t color, const Screen& screen) {
    const PixelRect rect = pixels(frame, screen).intersected(shown_);
    for (int y = 0; y < rect.height; ++y) {
        const std::ptrdiff_t row =
            static_cast<std::ptrdiff_t>(rect.y - shown_.y + y) * shown_.width + (rect.x - shown_.x);
        std::fill_n(pixels_.begin() + row, std::max(rect.width, 0), color);
    }
}

void Camera::drawPanel(SimulatedPanel& panel, const SimulatedComputer& computer) {
    const auto screen = computer.screens.main();
    if (!screen) return;
    // The part of the picture that shows the panel, in the panel's own pixels.
    const PixelRect frame = pixels(panel.frame(), *screen);
    const PixelRect seen = frame.intersected(shown_);
    if (seen.isEmpty()) return;
    const PixelRect area{seen.x - frame.x, seen.y - frame.y, seen.width, seen.height};
    panelPixels_.assign(static_cast<std::size_t>(area.area()), 0);
    panel.tree.nextFrame(computer.runLoop.now());
    painter_.paint(panel.tree, area,
                   {.pixels = panelPixels_.data(), .stride = area.width, .area = area});
    lay(panelPixels_, seen);
}

void Camera::lay(const std::vector<std::uint32_t>& picture, PixelRect place) {
    for (int y = 0; y < place.height; ++y) {
        const auto from = picture.begin() + static_cast<std::ptrdiff_t>(y) * place.width;
        const auto to = pixels_.begin() +
                        static_cast<std::ptrdiff_t>(place.y - shown_.y + y) * shown_.width +
                        (place.x - shown_.x);
        std::transform(from, from + place.width, to, to, laidOver);
    }
}

void Camera::drawCarried(const ItemDrag& drag, Point pointer, const Screen& screen) {
    const Rect frame{pointer.x - drag.size.width / 2, pointer.y - drag.size.height / 2,
                     drag.size.width, drag.size.height};
    const PixelRect place = pixels(frame, screen);
    const PixelRect seen = place.intersected(shown_);
    if (seen.isEmpty()) return;
    Bitmap picture(seen);
    const PixelRect all{0, 0, drag.image.width(), drag.image.height()};
    drawSprite(picture.canvas(), drag.image, {.source = all, .target = place}, 255);
    panelPixels_.assign(picture.row(seen.y) + seen.x,
                        picture.row(seen.y) + seen.x + picture.size());
    lay(panelPixels_, seen);
}

Film::Film(std::filesystem::path target, int framesPerSecond, std::optional<PixelRect> area)
    : target_(std::move(target)),
      framesPerSecond_(framesPerSecond),
      animated_(target_.extension() == ".png"),
      camera_(area) {
    if (!animated_) {
        std::error_code failed;
        std::filesystem::create_directories(target_, failed);
    }
}

void Film::shoot(SimulatedComputer& computer) {
    const auto& pixels = camera_.shoot(computer);
    if (animated_) {
        if (!writer_) {
            size_ = camera_.size();
            writer_.emplace(size_, framesPerSecond_);
        }
        writer_->add(camera_.size() == size_ ? pixels : inSize(pixels, camera_.size(), size_));
        return;
    }
    std::vector<std::uint32_t> opaque(pixels);
    for (auto& pixel : opaque) pixel |= 0xff000000u;
    char name[32];
    std::snprintf(name, sizeof name, "%05d.png", count_++);
    good_ = write(target_ / name, encodePng(camera_.size(), opaque)) && good_;
}

bool Film::finish() {
    if (animated_ && writer_) good_ = write(target_, writer_->finish()) && good_;
    return good_;
}

bool Film::write(const std::filesystem::path& file, std::span<const std::byte> bytes) {
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    out.flush();
    return out.good();
}

}  // namespace quibbits
