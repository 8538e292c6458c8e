#pragma once

#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

/// Collects what goes to Qt's message handler, for as long as it lives. One at a time.
class LogCapture {
public:
    LogCapture() {
        Lines().clear();
        Contexts().clear();
        m_previous = qInstallMessageHandler(Collect);
    }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    static QStringList& Lines() {
        static QStringList lines;
        return lines;
    }
    /// For each line "type category file function line" of its context.
    static QStringList& Contexts() {
        static QStringList contexts;
        return contexts;
    }

private:
    static void Collect(QtMsgType type, const QMessageLogContext& context, const QString& line) {
        static QMutex mutex;
        const QMutexLocker lock(&mutex);
        Lines().append(line);
        Contexts().append(QString::asprintf("%d %s %s %s %d", int(type), context.category,
                                            context.file ? "file" : "-",
                                            context.function ? "function" : "-", context.line));
    }

    QtMessageHandler m_previous;
};
