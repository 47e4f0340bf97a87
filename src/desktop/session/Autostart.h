#pragma once
// The file by which the desktop starts the program when the user logs in. It is the program's own:
// turned off it says so, in the desktop's terms, and stays.

#include <filesystem>

namespace quibbits::session {

class Autostart {
public:
    /// `folder` is the user's autostart folder, `program` what is to be started.
    Autostart(std::filesystem::path folder, std::filesystem::path program);

    bool isOn() const;
    /// False when the disk refuses.
    bool set(bool on) const;

private:
    std::filesystem::path file_;
    std::filesystem::path program_;
};

}  // namespace quibbits::session
