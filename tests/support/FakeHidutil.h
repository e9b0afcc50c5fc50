// A stand-in for the HID tool: records every call's arguments and prints a chosen output.
#pragma once

#include "Files.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

namespace orvane::testing {

class FakeHidutil {
public:
    // Each call is recorded as its arguments, one per line, closed by a line of its own.
    FakeHidutil() {
        write("hidutil",
              "#!/bin/sh\n"
              "cd \"$(dirname \"$0\")\"\n"
              "printf '%s\\n' \"$@\" '<end of call>' >> calls\n"
              "cat stdout 2>/dev/null; cat stderr >&2 2>/dev/null\n"
              "[ -f delay ] && sleep \"$(cat delay)\"\n"
              "[ -f crash ] && kill -KILL $$\n"
              "[ -f hang ] && { sleep 60 & echo $! > child; exec sleep 60; }\n"
              "exit 0\n");
        QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString path() const { return dir_.filePath(QStringLiteral("hidutil")); }
    QString missingPath() const { return dir_.filePath(QStringLiteral("no-such-tool")); }

    // What the tool prints on its next runs, on standard output and standard error.
    void setOutput(const QByteArray& bytes) { write("stdout", bytes); }
    void setErrorOutput(const QByteArray& bytes) { write("stderr", bytes); }
    // From now on the tool, after printing, starts a child and sleeps for a minute with it.
    void setHangs() { write("hang", ""); }
    qint64 childOfHungTool() const { return readFile(dir_.filePath(QStringLiteral("child"))).trimmed().toLongLong(); }
    // From now on the tool takes that long (sleep(1)'s words, "0.2") before it ends.
    void setDelay(const QByteArray& seconds) { write("delay", seconds); }
    // From now on the tool kills itself with SIGKILL after printing.
    void setCrashes() { write("crash", ""); }

    // The arguments of every run so far, oldest first.
    std::vector<QStringList> calls() const {
        std::vector<QStringList> calls(1);
        for (const QByteArray& line : readFile(dir_.filePath(QStringLiteral("calls"))).split('\n')) {
            if (line == "<end of call>") calls.emplace_back();
            else if (!line.isEmpty()) calls.back() << QString::fromUtf8(line);
        }
        calls.pop_back();  // what follows the last call's end
        return calls;
    }

private:
    void write(const char* name, const QByteArray& bytes) { writeFile(dir_.filePath(QString::fromLatin1(name)), bytes); }

    QTemporaryDir dir_;
};

}  // namespace orvane::testing
