#include "desktop/files/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "desktop/files/FileDescriptor.h"

namespace quibbits {
namespace {

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

std::optional<std::string> readWholeFile(const std::filesystem::path& file, std::size_t limit) {
    // Not blocking: a pipe of that name must not stop the program.
    const FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info {};
    if (!descriptor || fstat(descriptor.get(), &info) != 0) return std::nullopt;
    if (!S_ISREG(info.st_mode)) {
        errno = EINVAL;
        return std::nullopt;
    }
    const auto size = static_cast<std::size_t>(info.st_size);
    if (size > limit) {
        errno = EFBIG;
        return std::nullopt;
    }
    std::string bytes(size, '\0');
    std::size_t filled = 0;
    while (filled < size) {
        const auto count = read(descriptor.get(), bytes.data() + filled, size - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

bool writeWholeFile(const std::filesystem::path& file, std::string_view bytes) {
    const auto fresh = file.native() + ".new";
    const auto folder = file.parent_path();
    const FileDescriptor out(
        open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!out) return false;
    if (!writeAll(out.get(), bytes) || fsync(out.get()) != 0 ||
        rename(fresh.c_str(), file.c_str()) != 0) {
        const int reason = errno;
        unlink(fresh.c_str());
        errno = reason;
        return false;
    }
    const FileDescriptor directory(
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory) fsync(directory.get());
    return true;
}

}  // namespace quibbits
