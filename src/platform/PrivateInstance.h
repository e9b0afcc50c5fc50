// A private instance: the environment variable ORVANE_INSTANCE names one, and the application then
// keeps its own single-instance channel, settings and login item beside the user's own instance.
// Tests launch the real binary this way while the user's Orvane runs.
#pragma once

#include <QString>

namespace orvane {

inline constexpr char privateInstanceVariable[] = "ORVANE_INSTANCE";

// The private instance's name, or empty for the user's own instance. Characters other than ASCII
// letters, digits, '.', '_' and '-' become '_', so the name is safe in file and socket names.
inline QString privateInstanceName() {
    QString name = qEnvironmentVariable(privateInstanceVariable);
    for (QChar& c : name)
        if (c.unicode() >= 128 || !(c.isLetterOrNumber() || c == u'.' || c == u'_' || c == u'-')) c = u'_';
    return name;
}

// An identifier of the user's own instance ("Orvane", "com.user.Orvane") as this instance's own:
// unchanged for the user's instance, "<identifier>-<name>" for a private one.
inline QString forThisInstance(const QString& identifier) {
    const QString name = privateInstanceName();
    return name.isEmpty() ? identifier : identifier + u'-' + name;
}

}  // namespace orvane
