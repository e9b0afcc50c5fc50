// The entry point of the macOS link check (check-macos-link.sh): it reaches every operation the platform
// layer offers, so each must be defined by the macOS objects, and the linker follows every call they
// make. Linked, never run.
#include "platform/DesktopWords.h"
#include "platform/EventSystem.h"
#include "platform/HidTool.h"
#include "platform/LoginItem.h"
#include "platform/PlatformServices.h"

using namespace orvane;

namespace {

PlatformEvent* passOn(std::uint32_t, PlatformEvent* event, void*) { return event; }

}  // namespace

int main() {
    EventSystem& events = EventSystem::shared();
    const EventSystem::TapHandle tap =
        events.createTap(TapLocation::session, TapPlacement::headInsert, TapOptions::listenOnly, ~0ULL, &passOn, nullptr);
    const EventSystem::SourceHandle source = events.createRunLoopSource(tap);
    events.addToCurrentRunLoop(source);
    events.enableTap(tap, true);
    EventSystem::OwnedEvent event = events.createKeyboardEvent(0, true);
    events.setFlags(event.get(), events.flags(event.get()));
    events.setIntegerField(event.get(), EventField::keyboardEventKeycode, events.integerField(event.get(), EventField::eventSourceUserData));
    (void)events.systemDefinedFields(event.get());
    events.postToHID(event.get());
    events.removeFromCurrentRunLoop(source);
    (void)Accessibility::shared().isProcessTrusted(false);
    (void)Accessibility::shared().mayListenToKeyboard();
    (void)Accessibility::shared().instructions();

    LoginItem& loginItem = LoginItem::shared();
    (void)loginItem.status();
    (void)loginItem.registerItem();
    (void)loginItem.unregisterItem();
    LoginItem::installShared(nullptr);
    (void)hidToolPath();
    (void)DesktopWords::shared();

    const std::unique_ptr<InstanceChannel> channel = createInstanceChannel();
    if (channel->claimOrHandOver("message", std::chrono::milliseconds(0)) == InstanceChannel::Claim::ours) channel->stopListening();
    installQuitRequestHandler([] {});
    installReopenHandler([] {});
    installHidResetHandler([] {});
    installHidResetHandler({});
    (void)secureInputQuery();
    activateApplication();
    (void)trayIconClickOpensMenu();
    (void)trayPanelLightness(QRect());
    return 0;
}
