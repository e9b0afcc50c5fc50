#include "platform/linux/RecordedCapsLockMapping.h"

#include <linux/input-event-codes.h>

namespace orvane {

std::uint16_t RecordedCapsLockMapping::capsLockKey() {
    struct stat now {};
    if (::stat(statePath_.c_str(), &now) != 0) {
        known_ = false;
        return KEY_CAPSLOCK;
    }
    const bool same = known_ && now.st_ino == seen_.st_ino && now.st_dev == seen_.st_dev && now.st_size == seen_.st_size &&
                      now.st_mtim.tv_sec == seen_.st_mtim.tv_sec && now.st_mtim.tv_nsec == seen_.st_mtim.tv_nsec;
    if (!same) {
        key_ = loadKeymapState(statePath_).capsLockTarget.value_or(KEY_CAPSLOCK);
        seen_ = now;
        known_ = true;
    }
    return key_;
}

}  // namespace orvane
