#include "app/FirstFrameProbe.h"

#include "platform/PlatformServices.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QQuickWindow>
#include <QTimer>

namespace orvane {

void reportFirstFrameIfAsked(QQuickWindow& window) {
    const QString path = qEnvironmentVariable("ORVANE_FIRST_FRAME_PROBE");
    if (path.isEmpty()) return;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [path] {
        static bool reported = false;
        if (reported) return;
        reported = true;
        const QByteArray resident = QByteArray::number(residentMemoryKiB().value_or(0));
        QFile out(path);
        if (out.open(QIODevice::WriteOnly))
            out.write(QByteArray::number(QDateTime::currentMSecsSinceEpoch()) + ' ' + resident + '\n');
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    });
}

}  // namespace orvane
