#include "platform/mac/MacAccessibility.h"

#import <Foundation/Foundation.h>
#include <ApplicationServices/ApplicationServices.h>

namespace orvane {

bool MacAccessibility::isProcessTrusted(bool prompt) {
    NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @(prompt)};
    return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
}

bool MacAccessibility::mayListenToKeyboard() { return CGPreflightListenEventAccess(); }

}  // namespace orvane
