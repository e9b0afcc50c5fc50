#include "FakeHidutil.h"

#include <QFile>

namespace orvane::testing {
namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) file.write(bytes);
}

}  // namespace

FakeHidutil::FakeHidutil() {
    // Each call is recorded as its arguments, one per line, closed by a line of its own.
    const QByteArray script =
        "#!/bin/sh\n"
        "dir=$(dirname \"$0\")\n"
        "for arg in \"$@\"; do printf '%s\\n' \"$arg\" >> \"$dir/calls\"; done\n"
        "echo '<end of call>' >> \"$dir/calls\"\n"
        "[ -f \"$dir/stdout\" ] && cat \"$dir/stdout\"\n"
        "[ -f \"$dir/stderr\" ] && cat \"$dir/stderr\" >&2\n"
        "[ -f \"$dir/hang\" ] && exec sleep 60\n"
        "exit 0\n";
    writeFile(path(), script);
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void FakeHidutil::setOutput(const QByteArray& bytes) { writeFile(dir_.filePath(QStringLiteral("stdout")), bytes); }
void FakeHidutil::setErrorOutput(const QByteArray& bytes) { writeFile(dir_.filePath(QStringLiteral("stderr")), bytes); }

void FakeHidutil::setHangs(bool hangs) {
    if (hangs) writeFile(dir_.filePath(QStringLiteral("hang")), "");
    else QFile::remove(dir_.filePath(QStringLiteral("hang")));
}

std::vector<QStringList> FakeHidutil::calls() const {
    QFile file(dir_.filePath(QStringLiteral("calls")));
    std::vector<QStringList> calls;
    if (!file.open(QIODevice::ReadOnly)) return calls;
    QStringList current;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line == "<end of call>") {
            calls.push_back(current);
            current.clear();
        } else if (!line.isEmpty()) {
            current << QString::fromUtf8(line);
        }
    }
    return calls;
}

}  // namespace orvane::testing
