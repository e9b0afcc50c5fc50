#include "ui/settings/AppVersion.h"

namespace orvane {

QString versionString(const QString& shortVersion, const QString& build) {
    const QString version = shortVersion.isEmpty() ? QStringLiteral("1.0") : shortVersion;
    const QString number = build.isEmpty() ? QStringLiteral("1") : build;
    return version + QStringLiteral(" (") + number + u')';
}

QString applicationVersionString() {
    return versionString(QStringLiteral(ORVANE_SHORT_VERSION), QStringLiteral(ORVANE_BUILD_VERSION));
}

}  // namespace orvane
