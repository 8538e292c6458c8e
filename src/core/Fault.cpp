#include "LXFault.h"

#include <QtCore/QDebug>
#include <QtCore/QMessageLogger>
#include <QtCore/QString>

namespace LXFault {

namespace {

/// Fills the four places that all templates share, in the order in which they are numbered: what
/// is filled later cannot disturb a placeholder that is filled before.
QString Expand(const char* text, const Site& site) {
    return QString::fromLatin1(text)
        .arg(QString::fromLatin1(site.date))
        .arg(QString::fromLatin1(site.time))
        .arg(static_cast<qlonglong>(site.line), 0, 10)
        .arg(QString::fromLocal8Bit(site.file));
}

/// The log context carries nothing but the category: file and line stand in the message itself.
void Write(const QString& message) {
    QMessageLogger(nullptr, 0, nullptr, "default").debug().noquote() << message;
}

} // namespace

void Trace(const Site& site, const QString& message) {
    Write(Expand("Build date=%1, time=%2. Line=%3, file=\"%4\". %5", site).arg(message));
}

void LogException(const Site& site, const std::exception& fault) {
    Write(Expand("Build date=%1, time=%2. Unexpected exception: line=%3, file=\"%4\". "
                 "Exception content:\"%5\"",
                 site)
              .arg(QString::fromUtf8(fault.what())));
}

void LogUnknownException(const Site& site) {
    Write(
        Expand("Build date=%1, time=%2. Unexpected unknown exception: line=%3, file=\"%4\"", site));
}

} // namespace LXFault
