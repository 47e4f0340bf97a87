#pragma once
// Pictures of the simulated desktop: a backdrop with its windows and its dock, and the panels over
// it, as a person would see them.

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "codecs/AnimatedPng.h"
#include "layers/LayerTree.h"
#include "raster/Painter.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {

/// Draws the desktop as it is at the moment.
class Camera {
public:
    /// The part of the screen to show, in device pixels from the top left; all of it without one.
    explicit Camera(std::optional<PixelRect> area = std::nullopt) : area_(area) {}

    /// Opaque pixels of the area, row by row.
    const std::vector<std::uint32_t>& shoot(SimulatedComputer& computer);
    PngInfo size() const { return size_; }

private:
    void drawDesktop(const SimulatedComputer& computer);
    void fill(Rect frame, std::uint32_t color, const Screen& screen);
    void drawPanel(SimulatedPanel& panel, const SimulatedComputer& computer);
    /// Lays see-through pixels over a part of the picture.
    void lay(const std::vector<std::uint32_t>& picture, PixelRect place);
    void drawCarried(const ItemDrag& drag, Point pointer, const Screen& screen);
    /// A rectangle of points in the screen's device pixels, from the top left.
    static PixelRect pixels(Rect frame, const Screen& screen);

    std::optional<PixelRect> area_;
    PngInfo size_;
    PixelRect shown_;
    std::vector<std::uint32_t> pixels_;
    Painter painter_;
    std::vector<std::uint32_t> panelPixels_;
};

/// A film in the making: numbered PNG files in a folder, or one animated picture. The animated one
/// keeps the size of its first frame, whatever becomes of the screen.
class Film {
public:
    Film(std::filesystem::path target, int framesPerSecond, std::optional<PixelRect> area);

    void shoot(SimulatedComputer& computer);
    /// Writes what is left. False when a file could not be written.
    bool finish();

private:
    bool write(const std::filesystem::path& file, std::span<const std::byte> bytes);

    std::filesystem::path target_;
    int framesPerSecond_;
    bool animated_;
    Camera camera_;
    std::optional<AnimatedPngWriter> writer_;
    PngInfo size_;  // of the animated picture
    int count_ = 0;
    bool good_ = true;
};

}  // namespace quibbits
