#pragma once
// Memory in which pixels are drawn and handed to the X server: shared with it where that is
// possible, else sent over the connection. It is a small ring that grows up to a limit, so large
// pictures go in bands; before a place is used again the server has taken what lay there.

#include <xcb/shm.h>

#include <vector>

#include "desktop/x11/Connection.h"
#include "layers/LayerTree.h"

namespace quibbits::x11 {

class PixelTransfer {
public:
    explicit PixelTransfer(Connection& connection);
    ~PixelTransfer();
    PixelTransfer(const PixelTransfer&) = delete;
    PixelTransfer& operator=(const PixelTransfer&) = delete;

    /// How many rows of the width fit into one band.
    int rowsAtOnce(int width) const;
    /// Waits for the server now, if at all, so that the next bands, of so many pixels together, are
    /// sent without a wait between them. More than fits is prepared as far as it does.
    void prepare(std::size_t pixels);
    /// Where to draw a band, row after row without gaps. It holds until it is sent, or forgotten
    /// by the next call.
    std::uint32_t* reserve(int width, int height);
    /// Puts the band reserved last into the drawable, which has 32 bits a pixel.
    void send(xcb_drawable_t to, xcb_gcontext_t context, const PixelRect& area);
    /// Gives the memory back until it is needed again.
    void release();

    std::size_t heldBytes() const { return size_; }

private:
    void makeRoom(std::size_t bytes);
    void fit(std::size_t bytes);
    void resize(std::size_t size);
    bool share(std::size_t size);
    void waitForServer();

    Connection& connection_;
    bool canShare_ = false;
    std::size_t limit_ = 0;           // of a band, in bytes
    std::uint8_t* memory_ = nullptr;  // shared
    std::vector<std::uint8_t> own_;   // not shared
    xcb_shm_seg_t segment_ = 0;
    std::size_t size_ = 0;
    std::size_t next_ = 0;      // first byte that nothing was sent from since the server waited
    int smallBands_ = 0;        // in a row, for which the ring is far too large
    std::size_t prepared_ = 0;  // up to here bands need no more room
    std::size_t reserved_ = 0;  // where the band reserved last begins
};

}  // namespace quibbits::x11
