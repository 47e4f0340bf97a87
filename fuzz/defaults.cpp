// The defaults' file: any content is read or set aside whole, and a write afterwards is kept.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "desktop/files/DefaultsFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quibbits;
    namespace fs = std::filesystem;
    static const fs::path folder =
        fs::temp_directory_path() / ("quibbits-fuzz-" + std::to_string(getpid()));
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    fs::create_directories(folder);
    const fs::path file = folder / "defaults.json";
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    {
        DefaultsFile defaults(file);
        for (const auto& [key, value] : defaults.all()) {
            if (defaults.stored(key) != value) std::abort();
            static_cast<void>(defaults.boolean(key));
            static_cast<void>(defaults.integer(key));
            static_cast<void>(defaults.string(key));
        }
        defaults.set("pet.energy", 0.25);
        if (!defaults.flush()) std::abort();
    }
    if (DefaultsFile(file).onlyNumber("pet.energy") != 0.25) std::abort();
    fs::remove_all(folder, ignored);
    return 0;
}
