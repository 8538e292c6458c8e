#include "TestPool.h"

#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

namespace {

/// The library's own lines would drown the tests' output; a test that cares captures them.
void HideDebugLines(QtMsgType type, const QMessageLogContext&, const QString& line) {
    if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(line));
}

/// Gives each test a pool of its own, in which all tiles must be back at its end.
class PoolOfEachTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { m_pool.emplace(); }
    void OnTestEnd(const testing::TestInfo&) override {
        EXPECT_EQ(m_pool->InUse(), 0u) << "tiles were lost";
        m_pool.reset();
    }

    std::optional<TestPool> m_pool;
};

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    qInstallMessageHandler(HideDebugLines);
    testing::UnitTest::GetInstance()->listeners().Append(new PoolOfEachTest);
    return RUN_ALL_TESTS();
}
