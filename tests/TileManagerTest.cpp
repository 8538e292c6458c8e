#include "LXPageFile.h"
#include "LXTileException.h"
#include "RMTileManager64.h"
#include "support/LogCapture.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

void Count(void* calls, const std::exception& fault) {
    EXPECT_NE(dynamic_cast<const std::bad_alloc*>(&fault), nullptr);
    ++*static_cast<int*>(calls);
}

} // namespace

TEST(TileManager, HandsOutInAddressOrderAndReusesTheLatest) {
    RMTileManager64 manager(false, 4096, 5, 5);
    auto* first = manager.MakeTile();
    auto* second = manager.MakeTile();
    EXPECT_EQ(second->memory - first->memory, 4096);
    EXPECT_EQ(manager.GetMemory(first, true), first->memory);
    std::memset(first->memory, 7, 4096);
    manager.Release(first);
    manager.Release(second);
    EXPECT_EQ(manager.MakeTile(), second);
    EXPECT_EQ(manager.MakeTile(), first);
    std::vector<char> bytes(4096);
    manager.ReadMemory(first, bytes.data());
    EXPECT_EQ(bytes, std::vector<char>(4096, 7)) << "a tile keeps its bytes";
    manager.ReadMemory(nullptr, nullptr);
    EXPECT_EQ(manager.GetMemory(nullptr, false), nullptr);
}

TEST(TileManager, NotifiesOncePerEpisode) {
    RMTileManager64 manager(false, 64, 5, 3); // the handles are the limit, not the blocks
    int calls = 0;
    manager.SetExceptionHandler(Count, &calls);
    RMTileManager64::TileData* last = nullptr;
    for (int i = 0; i < 3; ++i)
        last = manager.MakeTile();
    EXPECT_EQ(manager.GetAvailableCount(), 0u);
    EXPECT_THROW(manager.MakeTile(), std::bad_alloc);
    EXPECT_THROW(manager.AllocTile(), std::bad_alloc);
    EXPECT_THROW(manager.MakeTiles(1), std::bad_alloc);
    EXPECT_THROW(manager.MakeTiles(0), std::bad_alloc) << "0 free tiles are not more than 0";
    EXPECT_EQ(calls, 1);
    manager.Release(last);
    EXPECT_EQ(manager.MakeTile(), last);
    EXPECT_THROW(manager.MakeTile(), std::bad_alloc);
    EXPECT_EQ(calls, 2);
}

TEST(TileManager, BulkRequestLeavesOneBehind) {
    RMTileManager64 manager(false, 64, 8, 8);
    EXPECT_THROW(manager.MakeTiles(manager.GetAvailableCount()), std::bad_alloc);
    EXPECT_EQ(manager.GetAvailableCount(), 8u) << "nothing is taken by a request that fails";
    const QList<void*> tiles = manager.MakeTiles(7);
    EXPECT_EQ(tiles.size(), 7);
    EXPECT_EQ(manager.GetAvailableCount(), 1u);
    manager.CleanUpTiles(tiles);
    EXPECT_EQ(manager.GetAvailableCount(), 8u);
    EXPECT_EQ(manager.MakeTile(), tiles.last()) << "given back in list order";
}

TEST(TileManager, SurvivesAThrowingHandler) {
    RMTileManager64 manager(false, 64, 1, 1);
    manager.SetExceptionHandler(
        [](void*, const std::exception&) { throw std::runtime_error("handler"); }, nullptr);
    auto* tile = manager.MakeTile();
    EXPECT_THROW(manager.MakeTile(), std::runtime_error);
    EXPECT_THROW(manager.MakeTile(), std::bad_alloc) << "the episode has been told";
    EXPECT_EQ(manager.GetAvailableCount(), 0u); // both locks are free again
    manager.SetExceptionHandler(nullptr, nullptr);
    manager.CleanUpTile(tile);
    EXPECT_EQ(manager.MakeTile(), tile);
}

TEST(TileManager, TellsItsEnd) {
    const LogCapture log;
    {
        RMTileManager64 manager(false, 64, 4, 4);
        manager.MakeTile();
        manager.MakeTile();
    }
    ASSERT_EQ(LogCapture::Lines().size(), 3);
    const QString stamp =
        QStringLiteral("^Build date=\\w{3} [ \\d]\\d \\d{4}, time=\\d\\d:\\d\\d:\\d\\d\\. "
                       "Line=%1, file=\"src/RMTileManager64.cpp\"\\. %2$");
    const auto matches = [&](int i, int line, const char* text) {
        const QRegularExpression shape(stamp.arg(line).arg(QLatin1String(text)));
        EXPECT_TRUE(shape.match(LogCapture::Lines()[i]).hasMatch())
            << qPrintable(LogCapture::Lines()[i]);
    };
    matches(0, 257, "Destroy");
    matches(1, 266, "Tile manager:lost memory blocks = 2");
    matches(2, 274, "Destroyed");
}

TEST(TileManager, InstanceComesAndGoesOnce) {
    const LogCapture log;
    RMTileManager64* const ofThisTest = std::exchange(RMTileManager64::m_pInstance, nullptr);
    ASSERT_EQ(RMTileManager64::Instance(), nullptr);
    RMTileManager64::InitInstance();
    RMTileManager64* const instance = RMTileManager64::Instance();
    ASSERT_NE(instance, nullptr);
    RMTileManager64::InitInstance(true);
    EXPECT_EQ(RMTileManager64::Instance(), instance);
    EXPECT_EQ(instance->GetAvailableCount(), 100000u);
    for (const quint64 value : instance->GetMemInfo().statistics)
        EXPECT_EQ(value, 0u);
    RMTileManager64::ReleaseInstance();
    EXPECT_EQ(RMTileManager64::Instance(), nullptr);
    RMTileManager64::ReleaseInstance();
    EXPECT_EQ(LogCapture::Lines().size(), 3);
    RMTileManager64::m_pInstance = ofThisTest;
}

TEST(TileManager, SweepsPageFilesOnly) {
    const QTemporaryDir directory;
    const bool wasSet = qEnvironmentVariableIsSet("TMPDIR");
    const QByteArray previous = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(directory.path()));
    const auto make = [&](const char* name) {
        QFile file(directory.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name;
    };
    QDir(directory.path()).mkpath(QStringLiteral("fenvora-directory.page"));
    make("fenvora1.page");
    make("fenvora.page");
    make("fenvora1.page.txt");
    make("other.page");
    make("fenvora-directory.page/fenvora2.page");
    RMTileManager64::CleanupPageFiles();
    wasSet ? qputenv("TMPDIR", previous) : qunsetenv("TMPDIR");
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
              QStringList({QStringLiteral("fenvora-directory.page"),
                           QStringLiteral("fenvora1.page.txt"), QStringLiteral("other.page")}));
    EXPECT_TRUE(
        QFile::exists(directory.filePath(QStringLiteral("fenvora-directory.page/fenvora2.page"))));
}

TEST(TileManager, FaultVocabularyHasItsTexts) {
    EXPECT_STREQ(LXTMBadInstance().what(), "Tile manager instance doesn't exist.");
    EXPECT_STREQ(LXTMSwapError().what(), "Nothing to swap.");
    EXPECT_STREQ(LXTMInvalidBlock().what(), "Invalid tile pointer.");
    EXPECT_STREQ(LXTMAlreadyFree().what(), "Tile already free.");
    EXPECT_STREQ(LXTMSwapFileError().what(), "Can't create swap file.");
}

TEST(PageFile, IsEmptiedAndMadeExactlyAsLong) {
    const QTemporaryDir directory;
    for (const auto extend : {ExtendsCommon, ExtendsFile}) {
        const QString path = directory.filePath(QStringLiteral("page"));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(5000, 'x'));
        file.close();
        extend(path, 3000);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), QByteArray(3000, '\0'));
        file.remove();
        extend(directory.filePath(QStringLiteral("missing/page")), 10); // nothing is reported
    }
}
