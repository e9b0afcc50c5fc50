#include "interception/InstalledTap.h"

namespace orvane {

InstalledTap::Result InstalledTap::install(EventSystem& events, TapOptions options, TapCallback callback, void* userInfo,
                                           bool keepTapWithoutSource) {
    tap_ = events.createTap(TapLocation::session, TapPlacement::headInsert, options, eventMask, callback, userInfo);
    if (!tap_) return Result::tapFailed;
    source_ = events.createRunLoopSource(tap_);
    if (!source_) {
        if (!keepTapWithoutSource) tap_.reset();
        return Result::sourceFailed;
    }
    events.addToCurrentRunLoop(source_);
    events.enableTap(tap_, true);
    return Result::installed;
}

void InstalledTap::uninstall(EventSystem& events) {
    if (tap_) events.enableTap(tap_, false);
    if (source_) events.removeFromCurrentRunLoop(source_);
    tap_.reset();
    source_.reset();
}

}  // namespace orvane
