// The simulated platform is a Mac's: its desktop's words are a Mac's unless a test chooses others.
#include "platform/DesktopWords.h"
#include "platform/sim/SharedPlatform.h"

namespace orvane {
namespace {

DesktopWords& simulated() {
    static DesktopWords words = DesktopWords::mac();
    return words;
}

}  // namespace

const DesktopWords& DesktopWords::shared() { return simulated(); }

void simulateDesktopWords(const DesktopWords& words) { simulated() = words; }

}  // namespace orvane
