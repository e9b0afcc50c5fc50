#include "app/FirstFrameProbe.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QQuickWindow>
#include <QTimer>

namespace orvane {
namespace {

// The process's resident memory from /proc (Linux); "0" where that cannot be read.
QByteArray residentKiB() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly))
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').value(0);
    return "0";
}

}  // namespace

void reportFirstFrameIfAsked(QQuickWindow& window) {
    const QString path = qEnvironmentVariable("ORVANE_FIRST_FRAME_PROBE");
    if (path.isEmpty()) return;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [path] {
        static bool reported = false;
        if (reported) return;
        reported = true;
        const QByteArray resident = residentKiB();
        QFile out(path);
        if (out.open(QIODevice::WriteOnly))
            out.write(QByteArray::number(QDateTime::currentMSecsSinceEpoch()) + ' ' + resident + '\n');
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    });
}

}  // namespace orvane
