#include "desktop/files/DiskFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "desktop/files/FileDescriptor.h"
#include "desktop/files/UserFolders.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

constexpr int mostClashes = 10'000;

/// A trash folder, and the volume that its notes of origin are relative to, if any.
struct Trash {
    fs::path folder;
    fs::path volume;
};

std::optional<struct stat> linkInfo(const fs::path& path) {
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0) return std::nullopt;
    return info;
}

bool isOwnFolder(const fs::path& path) {
    const auto info = linkInfo(path);
    return info && S_ISDIR(info->st_mode) && info->st_uid == getuid();
}

bool makeOwnFolder(const fs::path& path) {
    mkdir(path.c_str(), 0700);
    return isOwnFolder(path);
}

/// The topmost folder of the file system that the folder lies on.
fs::path volumeOf(fs::path folder, dev_t device) {
    while (folder.has_relative_path()) {
        const auto parent = linkInfo(folder.parent_path());
        if (!parent || parent->st_dev != device) break;
        folder = folder.parent_path();
    }
    return folder;
}

/// The volume's shared trash when an administrator has prepared one, else one of the user's own.
std::optional<Trash> volumeTrash(const fs::path& volume) {
    const auto user = std::to_string(getuid());
    const auto shared = linkInfo(volume / ".Trash");
    if (shared && S_ISDIR(shared->st_mode) && (shared->st_mode & S_ISVTX) &&
        makeOwnFolder(volume / ".Trash" / user)) {
        return Trash{volume / ".Trash" / user, volume};
    }
    const auto own = volume / (".Trash-" + user);
    if (!makeOwnFolder(own)) return std::nullopt;
    return Trash{own, volume};
}

std::optional<Trash> trashFor(const fs::path& home, const fs::path& parent, dev_t device) {
    std::error_code error;
    fs::create_directories(home.parent_path(), error);
    makeOwnFolder(home);
    struct stat info {};
    if (stat(home.c_str(), &info) == 0 && info.st_dev == device) return Trash{home, {}};
    return volumeTrash(volumeOf(parent, device));
}

std::string percentEncoded(const std::string& path) {
    constexpr const char* plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string out;
    for (const char c : path) {
        if (std::string_view(plain).find(c) != std::string_view::npos) {
            out += c;
            continue;
        }
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(c));
        out += code;
    }
    return out;
}

std::string infoText(const Trash& trash, const fs::path& origin) {
    const auto noted = trash.volume.empty() ? origin : origin.lexically_relative(trash.volume);
    const auto now = std::time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + percentEncoded(noted.native()) + "\nDeletionDate=" + date + "\n";
}

/// "notes.txt", then "notes.2.txt" and so on.
std::string numbered(const fs::path& name, int number) {
    if (number == 1) return name.native();
    return name.stem().native() + "." + std::to_string(number) + name.extension().native();
}

bool renameOntoNothing(const fs::path& from, const fs::path& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    if (linkInfo(to)) {  // a file system that cannot check by itself
        errno = EEXIST;
        return false;
    }
    return rename(from.c_str(), to.c_str()) == 0;
}

bool writeInfo(const fs::path& info, const std::string& text) {
    const FileDescriptor out(open(info.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!out) return false;
    if (write(out.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()))
        return true;
    unlink(info.c_str());
    errno = ENOSPC;
    return false;
}

fs::path withoutLinks(const fs::path& path) {
    std::error_code error;
    const auto found = fs::weakly_canonical(path, error);
    return error ? path.lexically_normal() : found;
}

}  // namespace

DiskFiles::DiskFiles(fs::path trash, Watcher watcher)
    : trash_(std::move(trash)),
      desktop_(quibbits::desktopFolder()),
      downloads_(withoutLinks(quibbits::downloadsFolder())),
      watcher_(std::move(watcher)) {}

fs::path DiskFiles::homeTrash() {
    return dataFolder() / "Trash";
}

bool DiskFiles::exists(const std::string& path) const {
    return linkInfo(path).has_value();
}

bool DiskFiles::isFolder(const std::string& path) const {
    const auto info = linkInfo(path);
    return info && S_ISDIR(info->st_mode);
}

std::string DiskFiles::fingerprint(const std::string& path) const {
    const auto info = linkInfo(path);
    if (!info || !S_ISREG(info->st_mode)) return {};
    std::string print;
    for (const auto part :
         {static_cast<std::uint64_t>(info->st_dev), static_cast<std::uint64_t>(info->st_ino),
          static_cast<std::uint64_t>(info->st_size),
          static_cast<std::uint64_t>(info->st_mtim.tv_sec),
          static_cast<std::uint64_t>(info->st_mtim.tv_nsec)}) {
        print += std::to_string(part) + " ";
    }
    return print;
}

bool DiskFiles::moveToTrash(const std::string& path) {
    fs::path given(path);
    if (!given.is_absolute()) return false;
    if (!given.has_filename()) given = given.parent_path();  // "/home/somebody/folder/"
    if (given.filename() == "." || given.filename() == "..") return false;
    // Behind a link ".." is not where it came from: only the system can follow both.
    std::error_code error;
    const auto parent = fs::canonical(given.parent_path(), error);
    const auto place = linkInfo(parent);
    if (error || !place || !given.has_filename() || !linkInfo(given)) return false;

    const auto trash = trashFor(trash_, parent, place->st_dev);
    if (!trash) return false;
    const auto files = trash->folder / "files";
    const auto infos = trash->folder / "info";
    if (!makeOwnFolder(files) || !makeOwnFolder(infos)) return false;

    const auto origin = parent / given.filename();
    const auto text = infoText(*trash, origin);
    for (int number = 1; number <= mostClashes; ++number) {
        const auto name = numbered(given.filename(), number);
        const auto info = infos / (name + ".trashinfo");
        if (!writeInfo(info, text)) {
            if (errno == EEXIST) continue;
            return false;
        }
        if (renameOntoNothing(origin, files / name)) return true;
        const int reason = errno;
        unlink(info.c_str());  // the note just written, about nothing
        if (reason != EEXIST) return false;
    }
    return false;
}

}  // namespace quibbits
