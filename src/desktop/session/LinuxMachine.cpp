#include "desktop/session/LinuxMachine.h"

namespace quibbits::session {

LinuxMachine::LinuxMachine(EventRunLoop& loop, Buses buses, const Roots& roots)
    : power_(loop, buses.system, roots.system),
      heat_(loop, roots.system),
      network_(loop, buses.system),
      players_(buses.session),
      cameras_(loop, {.devices = roots.devices, .system = roots.system}) {
    power_.onChange = [this] { powerChanged.emit(); };
    heat_.onChange = [this] { thermalStateChanged.emit(); };
    network_.onReport = [this](bool satisfied) { reportNetwork(satisfied); };
    players_.onReport = [this](const std::string& state) { playerReported.emit(state); };
    cameras_.onChange = [this] { camerasChanged.emit(); };
    beforeWaiting_ = loop.beforeWaiting([this] { lookForListeners(); });
}

/// Heat costs readings, so it is watched only for somebody; the network's first report waits for
/// the first listener.
void LinuxMachine::lookForListeners() {
    if (thermalStateChanged.hasListeners()) {
        heat_.start();
    } else {
        heat_.stop();
    }
    if (!networkIsTold_ && network_.satisfied()) reportNetwork(*network_.satisfied());
}

void LinuxMachine::reportNetwork(bool satisfied) {
    networkIsTold_ = networkIsTold_ || networkReported.hasListeners();
    networkReported.emit(satisfied);
}

}  // namespace quibbits::session
