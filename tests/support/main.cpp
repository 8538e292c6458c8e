#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

/// The library's own lines would drown the tests' output; a test that cares captures them.
void HideDebugLines(QtMsgType type, const QMessageLogContext&, const QString& line) {
    if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(line));
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    qInstallMessageHandler(HideDebugLines);
    return RUN_ALL_TESTS();
}
