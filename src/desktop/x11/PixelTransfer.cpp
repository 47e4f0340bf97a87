#include "desktop/x11/PixelTransfer.h"

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <bit>

#include "desktop/files/FileDescriptor.h"

namespace quibbits::x11 {
namespace {

constexpr std::size_t smallest = std::size_t{512} << 10;
constexpr std::size_t largest = std::size_t{2} << 20;
constexpr std::size_t bandsInRing = 4;
constexpr int smallBandsBeforeShrinking = 10;
constexpr std::size_t requestHead = 64;
constexpr std::size_t bytesPerPixel = 4;

/// Descriptors pass only to a server on this machine.
bool isLocal(const Connection& connection) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return getsockname(xcb_get_file_descriptor(connection.xcb()),
                       reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
           address.ss_family == AF_UNIX;
}

}  // namespace

PixelTransfer::PixelTransfer(Connection& connection)
    : connection_(connection), canShare_(connection.shm && isLocal(connection)) {
    // A server that will not share memory after all gets the band at hand in one request.
    const std::size_t request = std::size_t{xcb_get_maximum_request_length(connection.xcb())} * 4;
    limit_ = std::min(largest, request - requestHead);
}

PixelTransfer::~PixelTransfer() {
    release();
}

int PixelTransfer::rowsAtOnce(int width) const {
    return std::max(1,
                    static_cast<int>(limit_ / (static_cast<std::size_t>(width) * bytesPerPixel)));
}

void PixelTransfer::prepare(std::size_t pixels) {
    const std::size_t bytes = std::min(pixels * bytesPerPixel, limit_);
    makeRoom(bytes);
    prepared_ = next_ + bytes;
}

void PixelTransfer::makeRoom(std::size_t bytes) {
    fit(bytes);
    prepared_ = 0;
    if (next_ + bytes <= size_) return;
    waitForServer();
    next_ = 0;
}

std::uint32_t* PixelTransfer::reserve(int width, int height) {
    const auto bytes =
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * bytesPerPixel;
    if (next_ + bytes > prepared_) makeRoom(bytes);
    reserved_ = next_;
    return reinterpret_cast<std::uint32_t*>((memory_ ? memory_ : own_.data()) + reserved_);
}

/// Room for four bands: each time around costs one wait for the server. A ring that was made for a
/// whole screen does not stay for a sprite: a small one stays in the caches.
void PixelTransfer::fit(std::size_t bytes) {
    const auto fitting =
        std::clamp(std::bit_ceil(bandsInRing * bytes), smallest, std::max(limit_, bytes));
    smallBands_ = size_ >= 4 * fitting ? smallBands_ + 1 : 0;
    if (size_ < std::min(bandsInRing * bytes, limit_) || smallBands_ >= smallBandsBeforeShrinking) {
        resize(fitting);
        smallBands_ = 0;
    }
}

void PixelTransfer::send(xcb_drawable_t to, xcb_gcontext_t context, const PixelRect& area) {
    const auto width = static_cast<std::uint16_t>(area.width);
    const auto height = static_cast<std::uint16_t>(area.height);
    const auto x = static_cast<std::int16_t>(area.x);
    const auto y = static_cast<std::int16_t>(area.y);
    const auto bytes = std::size_t{width} * height * bytesPerPixel;
    constexpr std::uint8_t depth = 32;
    if (memory_) {
        xcb_shm_put_image(connection_.xcb(), to, context, width, height, 0, 0, width, height, x, y,
                          depth, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, segment_,
                          static_cast<std::uint32_t>(reserved_));
        next_ = reserved_ + bytes;
    } else {
        xcb_put_image(connection_.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, to, context, width, height, x,
                      y, 0, depth, static_cast<std::uint32_t>(bytes), own_.data() + reserved_);
    }
}

void PixelTransfer::release() {
    if (memory_) {
        xcb_shm_detach(connection_.xcb(), segment_);
        munmap(memory_, size_);
        memory_ = nullptr;
    }
    own_ = {};
    size_ = next_ = prepared_ = 0;
}

void PixelTransfer::resize(std::size_t size) {
    release();  // the server works in order: it detaches after it has taken what was sent
    if (canShare_ && !share(size)) canShare_ = false;
    if (!memory_) own_.resize(size);
    size_ = size;
}

bool PixelTransfer::share(std::size_t size) {
    FileDescriptor file(memfd_create("quibbits-pixels", MFD_CLOEXEC));
    if (!file || ftruncate(file.get(), static_cast<off_t>(size)) != 0) return false;
    void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (mapped == MAP_FAILED) return false;
    segment_ = xcb_generate_id(connection_.xcb());
    const auto attached = xcb_shm_attach_fd_checked(connection_.xcb(), segment_, file.release(), 0);
    if (const Owned<xcb_generic_error_t> refused{xcb_request_check(connection_.xcb(), attached)}) {
        munmap(mapped, size);
        return false;
    }
    memory_ = static_cast<std::uint8_t*>(mapped);
    return true;
}

void PixelTransfer::waitForServer() {
    if (!memory_) return;
    reply(connection_.xcb(), xcb_get_input_focus_reply, xcb_get_input_focus(connection_.xcb()));
}

}  // namespace quibbits::x11
