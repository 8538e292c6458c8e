#include "LXPageFile.h"

#include <QtCore/QFile>

void ExtendsCommon(const QString& path, unsigned long long bytes) {
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate))
        return;
    file.resize(static_cast<qint64>(bytes));
    file.close();
}

void ExtendsFile(const QString& path, unsigned long long bytes) {
    ExtendsCommon(path, bytes);
}
