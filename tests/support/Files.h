// Whole-file reads and writes for tests.
#pragma once

#include <QFile>

namespace orvane::testing {

// The file's bytes; none when it cannot be read.
inline QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
// Puts bytes in place of the file's contents; false when it cannot.
inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

}  // namespace orvane::testing
