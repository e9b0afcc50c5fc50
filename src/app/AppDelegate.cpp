#include "app/AppDelegate.h"

namespace orvane {
namespace {
AppDelegate* currentDelegate = nullptr;
}

AppDelegate* AppDelegate::current() { return currentDelegate; }
void AppDelegate::setCurrent(AppDelegate* delegate) { currentDelegate = delegate; }

}  // namespace orvane
