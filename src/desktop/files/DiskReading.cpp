// Looking at files: what lies in a folder, and whether two files are the same.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "desktop/files/DiskFiles.h"
#include "desktop/files/FileDescriptor.h"

namespace quibbits {
namespace {

constexpr std::size_t pieceSize = 256 * 1024;

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

FolderEntry entryOf(int folder, const char* name) {
    FolderEntry entry{.name = name};
    struct statx info {};
    if (statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_TYPE | STATX_SIZE | STATX_BTIME, &info) != 0) {
        return entry;
    }
    entry.isRegularFile = S_ISREG(info.stx_mode);
    if (entry.isRegularFile && (info.stx_mask & STATX_SIZE) != 0) entry.size = info.stx_size;
    if ((info.stx_mask & STATX_BTIME) != 0) {
        entry.created = Date{static_cast<double>(info.stx_btime.tv_sec) +
                             static_cast<double>(info.stx_btime.tv_nsec) * 1e-9};
    }
    return entry;
}

/// A regular file, open for reading once from its beginning to its end. No link is followed, and
/// nothing that would make the opening wait is opened.
FileDescriptor openRegular(const std::string& path) {
    FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat info {};
    if (!file || fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return FileDescriptor(-1);
    posix_fadvise(file.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    return file;
}

/// As many bytes as there are, a piece at most; nothing when they cannot be read.
std::optional<std::size_t> readPiece(int file, char* into) {
    std::size_t length = 0;
    while (length < pieceSize) {
        const ssize_t count = read(file, into + length, pieceSize - length);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        length += static_cast<std::size_t>(count);
    }
    return length;
}

}  // namespace

std::optional<std::vector<FolderEntry>> DiskFiles::list(const std::string& folder) const {
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.c_str()));
    if (!open) return std::nullopt;
    std::vector<FolderEntry> entries;
    errno = 0;
    while (const dirent* each = readdir(open.get())) {
        if (each->d_name[0] != '.') entries.push_back(entryOf(dirfd(open.get()), each->d_name));
        errno = 0;
    }
    if (errno != 0) return std::nullopt;
    std::ranges::sort(entries, {}, &FolderEntry::name);
    return entries;
}

bool DiskFiles::contentsEqual(const std::string& one, const std::string& other,
                              std::stop_token stop) const {
    const FileDescriptor first = openRegular(one);
    const FileDescriptor second = openRegular(other);
    if (!first || !second) return false;
    std::vector<char> here(pieceSize);
    std::vector<char> there(pieceSize);
    while (!stop.stop_requested()) {
        const auto count = readPiece(first.get(), here.data());
        if (!count || count != readPiece(second.get(), there.data())) return false;
        const auto end = here.begin() + static_cast<std::ptrdiff_t>(*count);
        if (!std::equal(here.begin(), end, there.begin())) return false;
        if (*count < pieceSize) return true;
    }
    return false;
}

}  // namespace quibbits
