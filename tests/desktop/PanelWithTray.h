#pragma once
// A panel at the top of the screen with a tray of the older kind, as another program's.

#include <cstdlib>

#include "VirtualDesktop.h"

namespace quibbits {

struct PanelWithTray {
    static constexpr int side = 24;                               // pixels
    static constexpr xcb_rectangle_t place{1000, 3, side, side};  // of the icon on the screen

    explicit PanelWithTray(OtherProgram& given) : program(given) {
        panel = program.open({.x = 900,
                              .y = 0,
                              .width = 300,
                              .height = 30,
                              .color = 0x808890,
                              .type = "_NET_WM_WINDOW_TYPE_DOCK"});
        selection = program.atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(program.xcb(), panel, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = program.root();
        message.type = program.atom("MANAGER");
        message.data.data32[1] = selection;
        message.data.data32[2] = panel;
        xcb_send_event(program.xcb(), 0, program.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(program.xcb());
    }
    /// Takes in the windows that ask for it.
    void turn() {
        while (auto* event = program.nextEvent()) {
            const auto& message = *reinterpret_cast<xcb_client_message_event_t*>(event);
            if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
                message.type == program.atom("_NET_SYSTEM_TRAY_OPCODE") &&
                message.data.data32[1] == 0) {
                icon = message.data.data32[2];
                auto* xcb = program.xcb();
                xcb_reparent_window(xcb, icon, panel, 100, 3);
                const std::uint32_t size[] = {side, side};
                xcb_configure_window(xcb, icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                     size);
                xcb_map_window(xcb, icon);
                xcb_flush(xcb);
            }
            std::free(event);
        }
    }

    OtherProgram& program;
    xcb_window_t panel = 0;
    xcb_atom_t selection = 0;
    xcb_window_t icon = 0;
};

}  // namespace quibbits
