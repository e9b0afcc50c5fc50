// A stand-in for the HID tool: records every call's arguments and prints a chosen output.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

namespace orvane::testing {

class FakeHidutil {
public:
    FakeHidutil();

    QString path() const { return dir_.filePath(QStringLiteral("hidutil")); }
    // A path where no tool exists.
    QString missingPath() const { return dir_.filePath(QStringLiteral("no-such-tool")); }

    // What the tool prints on its next runs (both streams share one pipe).
    void setOutput(const QByteArray& bytes);
    // Prints to standard error instead of standard output.
    void setErrorOutput(const QByteArray& bytes);
    // From now on the tool sleeps for a minute after printing.
    void setHangs();

    // The arguments of every run so far, oldest first.
    std::vector<QStringList> calls() const;

private:
    QTemporaryDir dir_;
};

}  // namespace orvane::testing
