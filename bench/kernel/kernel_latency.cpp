// Added latency of key remapping on a real kernel, side by side: Orvane (A → B; Caps Lock → Escape;
// Caps Lock as Control with Escape alone) and interception-tools (passing A through; caps2esc on Caps Lock), on the same uinput "physical"
// keyboard, in interleaved rounds; also Orvane's CPU time and wake-ups while idle.
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
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <optional>
#include <signal.h>
#include <string>
#include <thread>
#include <vector>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <time.h>
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
    // The real HID tool (ORVANE_HIDUTIL), so Caps Lock takes the road it takes in the application:
    // remapped below the taps, by the keyboard backend for a keyboard without a settable keymap.
    const char* tool = std::getenv("ORVANE_HIDUTIL");
    MappingStore store(*defaults, HIDUtil(tool ? QString::fromLocal8Bit(tool) : dir.filePath("no-hid-tool")));
    KeyMapping mapping{Uuid::random(), SourceKey::regular(KeyCode::a), TargetAction::key(KeyCode::b), true};
    if (which == "caps") mapping = {mapping.id, SourceKey::regular(KeyCode::capsLock), TargetAction::key(KeyCode::escape), true};
    // Caps Lock held as Control, tapped alone as Escape: caps2esc's two roles.
    if (which == "alone")
        mapping = {mapping.id, SourceKey::regular(KeyCode::capsLock), TargetAction::modifiersOnly({.control = true}), true, KeyCode::escape};
    store.setMappings({mapping});
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

using Samples = std::vector<double>;

// The moment now on the clock the output device's events are stamped with (CLOCK_MONOTONIC).
std::int64_t nowMicroseconds() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000 + now.tv_nsec / 1000;
}

// Waits up to `wait` for key events and reads the first batch that holds any: the kernel's time stamp
// of the first, and in `count` how many the batch held.
std::optional<std::int64_t> firstKeyEvent(int fd, std::chrono::milliseconds wait, int& count) {
    std::optional<std::int64_t> first;
    count = 0;
    for (const auto deadline = Clock::now() + wait; Clock::now() < deadline;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd waiting{fd, POLLIN, 0};
        if (::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left, 1))) <= 0) break;
        input_event events[16];
        const ssize_t got = ::read(fd, events, sizeof events);
        for (ssize_t i = 0; i < got / static_cast<ssize_t>(sizeof(input_event)); ++i) {
            if (events[i].type != EV_KEY) continue;
            if (!first) first = std::int64_t{events[i].input_event_sec} * 1'000'000 + events[i].input_event_usec;
            ++count;
        }
        if (count > 0) break;
    }
    return first;
}

void write(libevdev_uinput* keyboard, unsigned code, int value) {
    libevdev_uinput_write_event(keyboard, EV_KEY, code, value);
    libevdev_uinput_write_event(keyboard, EV_SYN, SYN_REPORT, 0);
}

// Types `code` on the keyboard `presses` times and times each write that the remapper answers: from
// just before the write to the kernel's stamp on the first key event on its output. Which writes it
// answers (a press, a release, both) is learnt from a few presses first.
Samples measure(libevdev_uinput* keyboard, const std::string& outputNode, unsigned code, int presses) {
    const int fd = ::open(outputNode.c_str(), O_RDONLY | O_NONBLOCK);
    if (fd < 0) return {};
    int clock = CLOCK_MONOTONIC;
    ::ioctl(fd, EVIOCSCLOCKID, &clock);
    bool answers[2] = {false, false};  // release, press
    for (int i = 0; i < 6; ++i) {
        int count = 0;
        write(keyboard, code, i % 2 == 0);
        if (firstKeyEvent(fd, 300ms, count)) answers[i % 2 == 0] = true;
    }
    Samples latencies;
    for (int i = 0; i < presses * 2; ++i) {
        const bool press = i % 2 == 0;
        const std::int64_t start = nowMicroseconds();
        write(keyboard, code, press);
        int count = 0;
        if (!answers[press]) {
            firstKeyEvent(fd, 2ms, count);
            continue;
        }
        // firstKeyEvent returns with the first batch; what else the remapper writes for this key is
        // taken before the next write. An answer is whole after 30 ms of quiet: caps2esc holds Escape
        // 20 ms before releasing it, and that tail must not be taken for the next write's answer.
        const auto first = firstKeyEvent(fd, 500ms, count);
        if (first) latencies.push_back(static_cast<double>(*first - start));
        for (int more = 0; more < 20 && count > 0; ++more) firstKeyEvent(fd, 30ms, count);
    }
    ::close(fd);
    return latencies;
}

double percentile(Samples samples, double fraction) {
    if (samples.empty()) return 0;
    std::sort(samples.begin(), samples.end());
    return samples[std::min(samples.size() - 1, static_cast<std::size_t>(static_cast<double>(samples.size()) * fraction))];
}

// CPU time and context switches (wake-ups) so far of every process in a process group, all threads.
struct Usage {
    double cpuMicroseconds = 0;
    long switches = 0;
};
Usage groupUsage(pid_t group) try {
    Usage usage;
    std::error_code listing;  // processes come and go while /proc is read
    for (const auto& process : std::filesystem::directory_iterator("/proc", listing)) {
        if (!std::isdigit(static_cast<unsigned char>(process.path().filename().string().front()))) continue;
        std::ifstream stat(process.path() / "stat");
        std::string text((std::istreambuf_iterator<char>(stat)), {});
        const auto close = text.rfind(')');
        // After the name: state, parent, process group.
        if (close == std::string::npos) continue;
        std::istringstream fields(text.substr(close + 2));
        std::string state;
        long parent = 0, processGroup = 0;
        if (!(fields >> state >> parent >> processGroup) || processGroup != group) continue;
        std::error_code error;
        for (const auto& task : std::filesystem::directory_iterator(process.path() / "task", error)) {
            std::ifstream schedstat(task.path() / "schedstat");  // nanoseconds on the CPU first
            double nanoseconds = 0;
            if (schedstat >> nanoseconds) usage.cpuMicroseconds += nanoseconds / 1000.0;
            std::ifstream status(task.path() / "status");
            for (std::string line; std::getline(status, line);)
                if (line.starts_with("voluntary_ctxt_switches:") || line.starts_with("nonvoluntary_ctxt_switches:"))
                    usage.switches += std::stol(line.substr(line.find(':') + 1));
        }
    }
    return usage;
} catch (const std::exception&) {
    return {};  // a process went away while it was read: this count is lost
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
    const int presses = argc > 1 ? std::atoi(argv[1]) : 300;  // each a press and a release
    constexpr int rounds = 4;
    libevdev* model = libevdev_new();
    libevdev_set_name(model, physicalName);
    for (unsigned code = KEY_ESC; code <= KEY_KPDOT; ++code) libevdev_enable_event_code(model, EV_KEY, code, nullptr);
    libevdev_uinput* keyboard = nullptr;
    if (libevdev_uinput_create_from_device(model, LIBEVDEV_UINPUT_OPEN_MANAGED, &keyboard) != 0) return 1;
    const std::string physical = libevdev_uinput_get_devnode(keyboard);
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");

    // Both tools read the same uinput keyboard and are timed the same way, in interleaved rounds.
    struct Setup {
        const char* label;
        std::string command;
        bool orvane;
        unsigned code;
        Samples pooled{};
        double cpuMicroseconds = 0;
        long switches = 0;
        int events = 0;
    };
    Setup setups[] = {
        {"(a) Orvane, A -> B", self + " --serve ab", true, KEY_A},
        {"(b) interception-tools passing A through", "interception -g " + physical + " | uinput -d " + physical, false, KEY_A},
        {"(c) Orvane, Caps Lock -> Escape", self + " --serve caps", true, KEY_CAPSLOCK},
        {"(d) interception-tools with caps2esc, Caps Lock", "interception -g " + physical + " | caps2esc | uinput -d " + physical,
         false, KEY_CAPSLOCK},
        // Its press answers with Control, its release with Control's release and then Escape: both are timed
        // (caps2esc answers the release alone), to the first event of each answer.
        {"(e) Orvane, Caps Lock -> Control, Escape alone", self + " --serve alone", true, KEY_CAPSLOCK},
    };
    std::printf("added latency of a key event on a uinput keyboard, %d rounds of %d events (us, write to the output's stamp):\n",
                rounds, presses * 2);
    for (int round = 1; round <= rounds; ++round) {
        for (Setup& setup : setups) {
            Child child = spawn(setup.command);
            const std::string output = setup.orvane ? readyNode(child) : findDevice(physicalName, physical);
            std::this_thread::sleep_for(300ms);  // the grab settles
            const Usage before = groupUsage(child.pid);
            const Samples samples = output.empty() ? Samples{} : measure(keyboard, output, setup.code, presses);
            const Usage after = groupUsage(child.pid);
            stop(child);
            std::printf("round %d  %-48s median %7.1f  (%zu samples)\n", round, setup.label, percentile(samples, 0.5), samples.size());
            setup.pooled.insert(setup.pooled.end(), samples.begin(), samples.end());
            setup.cpuMicroseconds += after.cpuMicroseconds - before.cpuMicroseconds;
            setup.switches += after.switches - before.switches;
            setup.events += presses * 2 + 6;
        }
    }
    std::printf("pooled:\n");
    for (const Setup& setup : setups) {
        const double median = percentile(setup.pooled, 0.5), p99 = percentile(setup.pooled, 0.99);
        const double events = std::max(setup.events, 1);
        std::printf("%-48s median %7.1f  p99 %7.1f  p99/median %.2f  (%zu samples); per event: %.1f us CPU, %.2f wake-ups\n",
                    setup.label, median, p99, median > 0 ? p99 / median : 0.0, setup.pooled.size(), setup.cpuMicroseconds / events,
                    static_cast<double>(setup.switches) / events);
    }
    const auto ratio = [&](int a, int b) {
        const double denominator = percentile(setups[b].pooled, 0.5);
        return denominator > 0 ? percentile(setups[a].pooled, 0.5) / denominator : 0.0;
    };
    std::printf("ratio of medians, (a) / (b): %.2f\nratio of medians, (c) / (d): %.2f\nratio of medians, (e) / (d): %.2f\n", ratio(0, 1),
                ratio(2, 3), ratio(4, 3));

    // Where the time goes: the system calls of each remapper (all its processes) over one more round.
    if (std::getenv("ORVANE_LATENCY_PROFILE")) {
        for (const Setup& setup : setups) {
            const std::string report = "/tmp/latency-profile.txt";
            std::string command = setup.command;
            for (std::size_t at = 0; (at = command.find('\'', at)) != std::string::npos; at += 4) command.replace(at, 1, "'\\''");
            Child child = spawn("exec strace -f -c -o " + report + " sh -c '" + command + "'");
            const std::string output = setup.orvane ? readyNode(child) : findDevice(physicalName, physical);
            std::this_thread::sleep_for(300ms);
            const Samples samples = output.empty() ? Samples{} : measure(keyboard, output, setup.code, presses);
            ::kill(-child.pid, SIGTERM);  // strace writes its table when what it traces ends
            ::waitpid(child.pid, nullptr, 0);
            if (child.out) ::fclose(child.out);
            std::printf("system calls of %s over %d events (%zu timed):\n", setup.label, presses * 2 + 6, samples.size());
            std::ifstream table(report);
            for (std::string line; std::getline(table, line);) std::printf("  %s\n", line.c_str());
        }
    }

    Child idle = spawn(self + " --serve ab");
    if (!readyNode(idle).empty()) {
        std::this_thread::sleep_for(500ms);
        const Usage before = groupUsage(idle.pid);
        std::this_thread::sleep_for(10s);
        const Usage after = groupUsage(idle.pid);
        std::printf("Orvane idle for 10 s: %.1f ms CPU, %ld wake-ups\n", (after.cpuMicroseconds - before.cpuMicroseconds) / 1000.0,
                    after.switches - before.switches);
    }
    stop(idle);
    libevdev_uinput_destroy(keyboard);
    libevdev_free(model);
    return 0;
}
