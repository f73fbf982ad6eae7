// Names of files as Qt has them and as the rest of the program has them.
#pragma once

#include <QDir>
#include <QString>
#include <string>

namespace kv_tr {

/// A name that Qt gives, in UTF-8 and with the system's separators: Qt's are always "/".
inline std::string FileNameOf(const QString& name) {
    return QDir::toNativeSeparators(name).toStdString();
}

}  // namespace kv_tr
