// Added latency of key remapping on a real kernel, side by side: Orvane (A → B; Caps Lock → Escape)
// and interception-tools (passing through; with caps2esc). A uinput "physical" keyboard is typed
// on, the remapper's output device is read back; also Orvane's CPU time and wake-ups while idle.
// Runs inside tools/kernel-vm (scripts/bench starts it there).
#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"
#include "platform/linux/EvdevKeyboards.h"
#include "platform/linux/LinuxEventSystem.h"
#include "platform/linux/UinputKeyboard.h"
#include "store/MappingStore.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <signal.h>
#include <string>
#include <thread>
#include <vector>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace orvane;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr const char* physicalName = "Latency bench keyboard";

// The Orvane side: the real Linux event system with one mapping, until killed.
int serve(const std::string& which) {
    int argc = 1;
    char name[] = "serve";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    std::vector<std::string> lines;
    diagnostics::redirectTo(&lines);
    QTemporaryDir dir;
    UinputKeyboard output;
    EvdevKeyboards input(output.devnode());
    LinuxEventSystem events(input, output, [] { return true; });
    auto defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    // No HID tool: Caps Lock is remapped by the taps, the road being measured.
    MappingStore store(*defaults, HIDUtil(dir.filePath("no-hid-tool")));
    const KeyCode source = which == "caps" ? KeyCode::capsLock : KeyCode::a;
    const KeyCode target = which == "caps" ? KeyCode::escape : KeyCode::b;
    store.setMappings({{Uuid::random(), SourceKey::regular(source), TargetAction::key(target), true}});
    store.waitForCapsLockDecisions();
    EventTapManager manager(events, store);
    if (!manager.start()) return 1;
    std::printf("ready %s\n", output.devnode().c_str());
    std::fflush(stdout);
    return app.exec();
}

struct Child {
    pid_t pid = -1;
    FILE* out = nullptr;
};

Child spawn(const std::string& command) {
    int pipeFds[2];
    if (::pipe(pipeFds) != 0) return {};
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::setpgid(0, 0);
        ::dup2(pipeFds[1], STDOUT_FILENO);
        ::close(pipeFds[0]);
        ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(pipeFds[1]);
    return {pid, ::fdopen(pipeFds[0], "r")};
}

void stop(Child& child) {
    ::kill(-child.pid, SIGKILL);
    ::waitpid(child.pid, nullptr, 0);
    if (child.out) ::fclose(child.out);
}

// The event device named `name` other than `except`, once it shows up.
std::string findDevice(const char* name, const std::string& except) {
    for (auto deadline = Clock::now() + 20s; Clock::now() < deadline; std::this_thread::sleep_for(50ms)) {
        for (const auto& entry : std::filesystem::directory_iterator("/dev/input")) {
            const std::string path = entry.path().string();
            if (path == except || path.find("event") == std::string::npos) continue;
            const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
            libevdev* device = nullptr;
            const bool match = fd >= 0 && libevdev_new_from_fd(fd, &device) == 0 && std::strcmp(libevdev_get_name(device), name) == 0;
            libevdev_free(device);
            if (fd >= 0) ::close(fd);
            if (match) return path;
        }
    }
    return {};
}

// Waits for `count` key events on fd; false on time-out.
bool awaitKeys(int fd, int count) {
    while (count > 0) {
        pollfd waiting{fd, POLLIN, 0};
        if (::poll(&waiting, 1, 2000) <= 0) return false;
        input_event events[16];
        const ssize_t got = ::read(fd, events, sizeof events);
        for (ssize_t i = 0; i < got / static_cast<ssize_t>(sizeof(input_event)); ++i)
            if (events[i].type == EV_KEY) --count;
    }
    return true;
}

void write(libevdev_uinput* keyboard, unsigned code, int value) {
    libevdev_uinput_write_event(keyboard, EV_KEY, code, value);
    libevdev_uinput_write_event(keyboard, EV_SYN, SYN_REPORT, 0);
}

struct Figures {
    double median = 0, p99 = 0;
    int samples = 0;
};

// Presses and releases `code` until `events` key events were timed; each press expects
// keysPerPress key events back, each release keysPerRelease.
Figures measure(libevdev_uinput* keyboard, const std::string& outputNode, unsigned code, int keysPerPress, int keysPerRelease, int events) {
    const int fd = ::open(outputNode.c_str(), O_RDONLY | O_NONBLOCK);
    if (fd < 0) return {};
    std::vector<double> latencies;
    for (int i = 0; i < events + 40; ++i) {  // the first 40 warm up
        const bool press = i % 2 == 0;
        const int expected = press ? keysPerPress : keysPerRelease;
        const auto start = Clock::now();
        write(keyboard, code, press ? 1 : 0);
        if (expected == 0) {
            std::this_thread::sleep_for(1ms);
            continue;
        }
        if (!awaitKeys(fd, expected)) break;
        if (i >= 40) latencies.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    ::close(fd);
    Figures figures;
    figures.samples = static_cast<int>(latencies.size());
    if (latencies.empty()) return figures;
    std::sort(latencies.begin(), latencies.end());
    figures.median = latencies[latencies.size() / 2];
    figures.p99 = latencies[std::min(latencies.size() - 1, latencies.size() * 99 / 100)];
    return figures;
}

// CPU time (ms) and context switches (wake-ups) of a process and its threads so far.
std::pair<double, long> usage(pid_t pid) {
    double cpuMs = 0;
    long switches = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
        std::ifstream stat(task.path() / "stat");
        std::string text((std::istreambuf_iterator<char>(stat)), {});
        const auto close = text.rfind(')');
        if (close == std::string::npos) continue;
        std::vector<std::string> fields;
        std::string field;
        for (char c : text.substr(close + 2)) {
            if (c == ' ') fields.push_back(std::exchange(field, {}));
            else field += c;
        }
        if (fields.size() > 13) cpuMs += (std::stod(fields[11]) + std::stod(fields[12])) * 1000.0 / static_cast<double>(::sysconf(_SC_CLK_TCK));
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with("voluntary_ctxt_switches:") || line.starts_with("nonvoluntary_ctxt_switches:"))
                switches += std::stol(line.substr(line.find(':') + 1));
    }
    return {cpuMs, switches};
}

std::string readyNode(Child& child) {
    char line[256];
    if (!child.out || !std::fgets(line, sizeof line, child.out)) return {};
    std::string text(line);
    if (!text.starts_with("ready ")) return {};
    return text.substr(6, text.find_last_not_of("\n") - 5);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::strcmp(argv[1], "--serve") == 0) return serve(argv[2]);
    if (!std::getenv("ORVANE_KERNEL_VM")) {
        std::puts("kernel latency: runs inside tools/kernel-vm/kernel-vm.sh");
        return 77;
    }
    const int events = argc > 1 ? std::atoi(argv[1]) : 2000;
    libevdev* model = libevdev_new();
    libevdev_set_name(model, physicalName);
    for (unsigned code = KEY_ESC; code <= KEY_KPDOT; ++code) libevdev_enable_event_code(model, EV_KEY, code, nullptr);
    libevdev_uinput* keyboard = nullptr;
    if (libevdev_uinput_create_from_device(model, LIBEVDEV_UINPUT_OPEN_MANAGED, &keyboard) != 0) return 1;
    const std::string physical = libevdev_uinput_get_devnode(keyboard);
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");

    struct Setup {
        const char* label;
        std::string command;
        bool orvane;
        unsigned code;
        int perPress, perRelease;
    };
    const Setup setups[] = {
        {"(a) Orvane, A -> B", self + " --serve ab", true, KEY_A, 1, 1},
        {"(b) Orvane, Caps Lock -> Escape (both)", self + " --serve caps", true, KEY_CAPSLOCK, 2, 0},
        {"(c) interception-tools, passing through", "interception -g " + physical + " | uinput -d " + physical, false, KEY_A, 1, 1},
        {"(d) interception-tools with caps2esc", "interception -g " + physical + " | caps2esc | uinput -d " + physical, false, KEY_A, 1, 1},
    };
    std::optional<double> orvaneMedian, toolsMedian;
    std::printf("added latency of one key event, %d events each (us):\n", events);
    for (const Setup& setup : setups) {
        Child child = spawn(setup.command);
        const std::string output = setup.orvane ? readyNode(child) : findDevice(physicalName, physical);
        std::this_thread::sleep_for(300ms);  // the grab settles
        const Figures figures = output.empty() ? Figures{} : measure(keyboard, output, setup.code, setup.perPress, setup.perRelease, events);
        stop(child);
        if (figures.samples == 0) {
            std::printf("%-42s not measured (%s)\n", setup.label, output.empty() ? "no output device" : "no events came back");
            continue;
        }
        std::printf("%-42s median %8.1f  p99 %8.1f  (%d samples)\n", setup.label, figures.median, figures.p99, figures.samples);
        if (setup.code == KEY_A && setup.orvane) orvaneMedian = figures.median;
        if (setup.code == KEY_A && !setup.orvane && !toolsMedian) toolsMedian = figures.median;
    }
    if (orvaneMedian && toolsMedian) std::printf("ratio of medians, (a) / (c): %.2f\n", *orvaneMedian / *toolsMedian);

    Child idle = spawn(self + " --serve ab");
    if (!readyNode(idle).empty()) {
        std::this_thread::sleep_for(500ms);
        const auto before = usage(idle.pid);
        std::this_thread::sleep_for(10s);
        const auto after = usage(idle.pid);
        std::printf("Orvane idle for 10 s: %.0f ms CPU, %ld wake-ups\n", after.first - before.first, after.second - before.second);
    }
    stop(idle);
    libevdev_uinput_destroy(keyboard);
    libevdev_free(model);
    return 0;
}
