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
    writeFile(path(),
              "#!/bin/sh\n"
              "cd \"$(dirname \"$0\")\"\n"
              "printf '%s\\n' \"$@\" '<end of call>' >> calls\n"
              "cat stdout 2>/dev/null; cat stderr >&2 2>/dev/null\n"
              "[ -f hang ] && exec sleep 60\n"
              "exit 0\n");
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void FakeHidutil::setOutput(const QByteArray& bytes) { writeFile(dir_.filePath(QStringLiteral("stdout")), bytes); }
void FakeHidutil::setErrorOutput(const QByteArray& bytes) { writeFile(dir_.filePath(QStringLiteral("stderr")), bytes); }
void FakeHidutil::setHangs() { writeFile(dir_.filePath(QStringLiteral("hang")), ""); }

std::vector<QStringList> FakeHidutil::calls() const {
    QFile file(dir_.filePath(QStringLiteral("calls")));
    std::vector<QStringList> calls(1);
    if (!file.open(QIODevice::ReadOnly)) return {};
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line == "<end of call>") calls.emplace_back();
        else if (!line.isEmpty()) calls.back() << QString::fromUtf8(line);
    }
    calls.pop_back();  // what follows the last call's end
    return calls;
}

}  // namespace orvane::testing
