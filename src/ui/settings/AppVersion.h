// The version the settings panel shows: the build's short version and build number.
#pragma once

#include <QString>

namespace orvane {

// "<short version> (<build>)", e.g. "2.3 (41)"; an empty short version reads as "1.0" and an empty
// build as "1", as for a bundle that names neither.
QString versionString(const QString& shortVersion, const QString& build);
// This build's: the project version and ORVANE_BUILD_NUMBER from the CMake configuration.
QString applicationVersionString();

}  // namespace orvane
