#include "desktop/session/Autostart.h"

#include <string>

#include "desktop/files/WholeFile.h"

namespace quibbits::session {
namespace {

constexpr std::size_t mostBytes = 64 * 1024;

/// As an argument in a desktop file, where quotation marks keep blanks and a percent sign begins a
/// field.
std::string quoted(const std::string& path) {
    std::string text = "\"";
    for (const char c : path) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') text += "\\\\";
        if (c == '%') text += '%';
        text += c;
    }
    return text + '"';
}

/// As a plain text in a desktop file.
std::string escaped(const std::string& path) {
    std::string text;
    for (const char c : path) text += c == '\\' ? std::string("\\\\") : std::string(1, c);
    return text;
}

bool says(const std::string& text, const std::string& line) {
    return text.starts_with(line + "\n") || text.find("\n" + line + "\n") != std::string::npos;
}

}  // namespace

Autostart::Autostart(std::filesystem::path folder, std::filesystem::path program)
    : file_(std::move(folder) / "quibbits.desktop"), program_(std::move(program)) {}

bool Autostart::isOn() const {
    const auto text = readWholeFile(file_, mostBytes);
    return text && !says(*text + "\n", "Hidden=true") &&
           !says(*text + "\n", "X-GNOME-Autostart-enabled=false");
}

bool Autostart::set(bool on) const {
    if (on == isOn()) return true;
    std::error_code error;
    std::filesystem::create_directories(file_.parent_path(), error);
    return writeWholeFile(file_,
                          "[Desktop Entry]\nType=Application\nName=Quibbits\n"
                          "Comment=Small creatures that live on your desktop\nExec=" +
                              quoted(program_.native()) +
                              // Passed over without a word once the program is gone.
                              "\nTryExec=" + escaped(program_.native()) +
                              "\nIcon=quibbits\nHidden=" + (on ? "false" : "true") + "\n");
}

}  // namespace quibbits::session
