#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include "raster/Painter.h"
#include "raster/TextEngine.h"

extern "C" [[gnu::weak]] const quibbits::TextEngine* quibbitsTextEngine();

namespace quibbits {

namespace {

/// Stands in where the module is missing.
class BlindTextEngine : public TextEngine {
public:
    Size measure(const StyledText& text, Size limit) const override {
        std::size_t count = 0;
        for (const auto& run : text.runs) count += characterCount(run.text);
        const double width = static_cast<double>(count) * text.fontSize * 0.6;
        const double lines = limit.width > 0 ? std::max(1.0, std::ceil(width / limit.width)) : 1;
        return {std::min(width, limit.width), std::min(lines * text.fontSize * 1.2, limit.height)};
    }
    void draw(cairo_t*, const Text&, Size) const override {}
};

/// The folder that the program's own file lies in.
std::string programFolder() {
    std::array<char, 4096> path{};
    const auto length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string file(path.data(), static_cast<std::size_t>(std::max<ssize_t>(0, length)));
    return file.substr(0, file.rfind('/') + 1);
}

using Export = const TextEngine* (*)();

Export load() {
    for (const char* place : {"quibbits-text.so", "../libexec/quibbits/quibbits-text.so"}) {
        void* module = dlopen((programFolder() + place).c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!module) continue;
        if (void* symbol = dlsym(module, "quibbitsTextEngine")) {
            return reinterpret_cast<Export>(symbol);
        }
    }
    return nullptr;
}

}  // namespace

const TextEngine& textEngine() {
    static const Export exported = quibbitsTextEngine ? &quibbitsTextEngine : load();
    static const BlindTextEngine blind;
    return exported ? *exported() : blind;
}

Size TextRuler::measure(const StyledText& text, Size limit) const {
    return textEngine().measure(text, limit);
}

}  // namespace quibbits
