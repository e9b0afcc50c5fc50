// Quit requests on POSIX systems: SIGTERM, SIGINT and SIGHUP become an orderly quit on the main thread,
// and SIGPIPE none.
#include "platform/PlatformServices.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace orvane {
namespace {

int signalPipe[2] = {-1, -1};

// Only async-signal-safe work here: a byte down the pipe; the event loop does the rest.
void onSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

}  // namespace

void installQuitRequestHandler(std::function<void()> onQuitRequest) {
    if (signalPipe[0] >= 0) return;
    // A reader of standard output that has gone makes a diagnostic line fail, never ends the process:
    // a quit must still reach the clear that gives Caps Lock back.
    ::signal(SIGPIPE, SIG_IGN);
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPipe) != 0) return;
    // Lives as long as the application object.
    auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, [onQuitRequest = std::move(onQuitRequest)] {
        char byte;
        [[maybe_unused]] const auto read = ::read(signalPipe[0], &byte, 1);
        onQuitRequest();
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        // A signal ignored at start stays ignored: under nohup a closed terminal does not quit Orvane.
        struct sigaction previous {};
        if (::sigaction(signal, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) continue;
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace orvane
