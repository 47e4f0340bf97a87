// Judges a folder of sheets that somebody has drawn, as the companion would read it: what it lacks,
// what does not fit and what nobody will ever see. A file that the folder does not have is taken
// from the built-in set, as the companion does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quibbits::atelier {

struct Judgement {
    std::vector<std::string> faults;  // the companion would show something else than is meant
    std::vector<std::string> notes;   // what stands in for something, and the like
    std::size_t animations = 0;       // that the folder has a picture or a description of
    bool operator==(const Judgement&) const = default;
};

/// `builtIn` is the folder of the built-in set; it may lack everything.
Judgement judge(const std::filesystem::path& folder, const std::filesystem::path& builtIn);

}  // namespace quibbits::atelier
