// Who uses a camera, and what is one.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "desktop/EventRunLoop.h"
#include "desktop/TemporaryFolder.h"
#include "desktop/session/Cameras.h"
#include "session/CameraNews.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Another program that has a file open, until it ends.
class OtherHolder {
public:
    enum class Memory { own, sharedWithTheDevice };
    OtherHolder(const std::filesystem::path& file, const std::string& name,
                Memory memory = Memory::own) {
        int ready[2];
        if (pipe(ready) != 0) std::abort();
        process_ = fork();
        if (process_ == 0) {
            prctl(PR_SET_NAME, name.c_str());
            const int descriptor = ::open(file.c_str(), O_RDONLY);
            if (memory == Memory::sharedWithTheDevice) {
                mmap(nullptr, 4096, PROT_READ, MAP_SHARED, descriptor, 0);
            }
            if (::write(ready[1], "!", 1) == 1) pause();
            _exit(0);
        }
        char byte = 0;
        if (::read(ready[0], &byte, 1) != 1) std::abort();
        close(ready[0]);
        close(ready[1]);
    }
    ~OtherHolder() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    OtherHolder(const OtherHolder&) = delete;
    OtherHolder& operator=(const OtherHolder&) = delete;

private:
    pid_t process_ = 0;
};

class CameraUse : public CameraNews<bool> {
protected:
    CameraUse() { quibbits::write(folder / "dev/video0", std::string(4096, ' ')); }
    void watch() {
        cameras.emplace(loop, session::CameraRoots{.devices = folder / "dev",
                                                   .system = folder / "sys",
                                                   .records = folder / "records"});
        cameras->onChange = [this] { told.push_back(cameras->inUse().at(0)); };
    }
    std::filesystem::path camera() const { return folder / "dev/video0"; }
    void look() { FileDescriptor(::open(camera().c_str(), O_RDONLY | O_CLOEXEC)); }

    TemporaryFolder folder;
    std::optional<session::Cameras> cameras;
};

TEST_F(CameraUse, WhoeverHeldACameraBeforeDoesNotUseItWhateverOthersDo) {
    const OtherHolder holder(camera(), "keeper");
    watch();
    look();
    letPass(1.3);
    EXPECT_THAT(told, IsEmpty()) << "a quick look";
    {
        const OtherHolder user(camera(), "call");
        EXPECT_TRUE(isTold(1));
        EXPECT_THAT(told, ElementsAre(true));
    }
    EXPECT_TRUE(isTold(2));
    EXPECT_THAT(told, ElementsAre(true, false));
}

TEST_F(CameraUse, AServiceThatKeepsEveryCameraOpenUsesItOnlyWhileItTakesPictures) {
    watch();
    const OtherHolder keeper(camera(), "wireplumber");
    const OtherHolder server(camera(), "pipewire");
    letPass(1.3);
    look();
    letPass(1.3);
    EXPECT_THAT(told, IsEmpty());
    {
        const OtherHolder user(camera(), "pipewire", OtherHolder::Memory::sharedWithTheDevice);
        EXPECT_TRUE(isTold(1));
        EXPECT_THAT(told, ElementsAre(true));
    }
    EXPECT_TRUE(isTold(2));
    EXPECT_THAT(told, ElementsAre(true, false));
}

TEST(Cameras, AreDevicesThatTakePicturesOfTheWorld) {
    struct Device {
        const char* number;
        const char* name;
        const char* capabilities;  // none where the device manager has not asked
        bool isCamera;
    };
    const Device devices[] = {
        {"0", "Integrated Camera", ":capture:", true},
        {"1", "Integrated Camera", ":", false},  // its data channel
        {"2", "Some Webcam", nullptr, true},
        {"10", "bcm2835-codec-decode", nullptr, false},
        {"11", "bcm2835-codec-encode", ":video_output:", false},
        {"13", "bcm2835-isp", ":capture:", false},
        {"18", "rkvdec", nullptr, false},
    };
    const TemporaryFolder folder;
    std::vector<std::filesystem::path> expected;
    for (const auto& [number, name, capabilities, isCamera] : devices) {
        const std::string device = std::string("video") + number;
        write(folder / "dev" / device, "");
        write(folder / "sys/class/video4linux" / device / "name", std::string(name) + "\n");
        write(folder / "sys/class/video4linux" / device / "dev",
              std::string("81:") + number + "\n");
        if (capabilities) {
            write(folder / "records" / (std::string("c81:") + number),
                  std::string("S:v4l/by-id\nE:ID_V4L_CAPABILITIES=") + capabilities + "\n");
        }
        if (isCamera) expected.push_back(folder / "dev" / device);
    }
    const std::filesystem::path made = folder / "sys/devices/virtual/video4linux/video7";
    write(made / "name", "Virtual Camera\n");
    std::filesystem::create_directory_symlink(made, folder / "sys/class/video4linux/video7");
    write(folder / "dev/video7", "");
    EXPECT_EQ(
        session::camerasIn(
            {.devices = folder / "dev", .system = folder / "sys", .records = folder / "records"}),
        expected);
}

}  // namespace
}  // namespace quibbits
