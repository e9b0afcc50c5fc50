#include "app/AlertPresenter.h"

#include <QTimer>

namespace orvane {

void AlertPresenter::whenFree(std::function<void()> show) {
    if (onScreen_ == 0 && waiting_.empty()) show();
    else waiting_.push_back(std::move(show));
}

// The waiting alerts come once the closed one's caller has acted on its answer and returned to
// the event loop, one after the other.
void AlertPresenter::alertClosed() {
    if (--onScreen_ > 0 || waiting_.empty()) return;
    QTimer::singleShot(0, [this] {
        while (onScreen_ == 0 && !waiting_.empty()) {
            auto next = std::move(waiting_.front());
            waiting_.erase(waiting_.begin());
            next();
        }
    });
}

}  // namespace orvane
