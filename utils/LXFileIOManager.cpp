#include "LXFileIOManager.h"

#include <QtCore/QDir>

QString LXFileIOManager::GetTemporaryPath() {
    return QDir::tempPath();
}
