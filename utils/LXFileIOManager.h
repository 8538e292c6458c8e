#pragma once

#include <QtCore/QString>

/// What the library asks of the platform's file system.
class LXFileIOManager {
public:
    /// The directory for temporary files.
    static QString GetTemporaryPath();
};
