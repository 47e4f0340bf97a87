#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "codecs/Png.h"
#include "simulator/Film.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

class Filming : public ::testing::Test {
protected:
    ~Filming() override { fs::remove_all(folder); }

    std::vector<std::byte> bytes(const fs::path& file) const {
        std::ifstream in(file, std::ios::binary);
        const std::string text(std::istreambuf_iterator<char>(in), {});
        const auto all = std::as_bytes(std::span(text));
        return {all.begin(), all.end()};
    }

    const fs::path folder =
        fs::temp_directory_path() / ("quibbits-film-" + std::to_string(getpid()));
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText ruler;
    SimulatedComputer computer{{.painting = true}, sheets, ruler};
};

TEST_F(Filming, KeepsItsSizeWhenTheScreenChanges) {
    fs::create_directories(folder);
    Film film(folder / "film.png", 20, std::nullopt);
    computer.setScreen({40, 30}, 1);
    film.shoot(computer);
    for (const Size size : {Size{80, 60}, Size{20, 50}, Size{40, 30}}) {
        computer.setScreen(size, 1);
        film.shoot(computer);
    }
    computer.screens.screen.reset();
    film.shoot(computer);
    ASSERT_TRUE(film.finish());
    const auto file = bytes(folder / "film.png");
    EXPECT_EQ(pngInfo(file), (PngInfo{40, 30}));
    const std::string text(reinterpret_cast<const char*>(file.data()), file.size());
    const auto number = [&](std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(text[at + i]);
        return value;
    };
    int frames = 0;
    for (auto at = text.find("fcTL"); at != std::string::npos; at = text.find("fcTL", at + 1)) {
        ++frames;
        EXPECT_LE(number(at + 16) + number(at + 8), 40u);   // its left edge and its width
        EXPECT_LE(number(at + 20) + number(at + 12), 30u);  // its top edge and its height
    }
    EXPECT_GE(frames, 3);
}

TEST_F(Filming, AHiddenPanelIsNotFollowed) {
    const auto made = computer.panels().makePanel({.frame = {0, 0, 100, 100}});
    auto& panel = static_cast<SimulatedPanel&>(*made);
    const auto layer = computer.layers.makeLayer(
        {.bounds = {0, 0, 10, 10}, .position = {50, 50}, .background = Color::white()});
    panel.root().addSublayer(layer);
    layer->add({.keyPath = KeyPath::positionX,
                .motion = BasicMotion{.from = 0.0, .to = 100.0},
                .timing = {.duration = 1, .repeatCount = forever}},
               "to and fro");
    computer.runLoop.advance(1);
    EXPECT_EQ(panel.frames, 0u) << "it was never shown";
    panel.orderFront();
    computer.runLoop.advance(1);
    EXPECT_GT(panel.repaints, 30u);
    panel.orderOut();
    const auto before = panel.frames;
    layer->setPosition({60, 50});
    computer.runLoop.advance(1);
    EXPECT_EQ(panel.frames, before) << "it is hidden";
    panel.orderFront();
    computer.runLoop.advance(0.1);
    EXPECT_GT(panel.frames, before);
}

}  // namespace
}  // namespace quibbits
