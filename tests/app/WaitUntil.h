// Runs the event loop until a condition holds, with a limit generous enough for a slow, busy machine.
#pragma once

#include <QDeadlineTimer>
#include <QTest>

namespace orvane::testing {

template <typename Condition>
bool waitUntil(Condition condition, int limitMs = 30000) {
    const QDeadlineTimer deadline(limitMs);
    while (!condition()) {
        if (deadline.hasExpired()) return false;
        QTest::qWait(5);
    }
    return true;
}

}  // namespace orvane::testing
