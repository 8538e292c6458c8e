#include "LXFault.h"
#include "support/LogCapture.h"

#include <QtCore/QString>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

constexpr LXFault::Site Place{"Oct 25 2017", "14:53:58", 42, "src/LXImage.cpp"};

struct Wordless : std::exception {
    const char* what() const noexcept override { return nullptr; }
};

QString OnlyLine() {
    EXPECT_EQ(LogCapture::Lines().size(), 1);
    return LogCapture::Lines().value(0);
}

} // namespace

TEST(Fault, TraceHasItsShapeAndAnEmptyContext) {
    const LogCapture log;
    LXFault::Trace(Place, QStringLiteral("100 %1 of \"it\""));
    EXPECT_EQ(OnlyLine(), QStringLiteral("Build date=Oct 25 2017, time=14:53:58. Line=42, "
                                         "file=\"src/LXImage.cpp\". 100 %1 of \"it\""));
    EXPECT_EQ(LogCapture::Contexts().value(0), QStringLiteral("0 default - - 0"));
}

TEST(Fault, StrictGuardLogsAndPassesOn) {
    const LogCapture log;
    EXPECT_EQ(LXFault::StrictGuard(Place, [] { return 5; }), 5);
    EXPECT_TRUE(LogCapture::Lines().isEmpty());

    const std::runtime_error thrown("%1 and %5");
    try {
        LXFault::StrictGuard(Place, [&] { throw std::runtime_error(thrown); });
        FAIL();
    } catch (const std::runtime_error& caught) {
        EXPECT_STREQ(caught.what(), "%1 and %5");
    }
    EXPECT_EQ(OnlyLine(), QStringLiteral("Build date=Oct 25 2017, time=14:53:58. Unexpected "
                                         "exception: line=42, file=\"src/LXImage.cpp\". "
                                         "Exception content:\"%1 and %5\""));
    LogCapture::Lines().clear();
    EXPECT_THROW(LXFault::StrictGuard(Place, [] { throw Wordless(); }), Wordless);
    EXPECT_TRUE(OnlyLine().endsWith(QStringLiteral("Exception content:\"\"")));
}

TEST(Fault, UnknownExceptionsPassBothForms) {
    const QString line = QStringLiteral("Build date=Oct 25 2017, time=14:53:58. Unexpected unknown "
                                        "exception: line=42, file=\"src/LXImage.cpp\"");
    const LogCapture log;
    EXPECT_THROW(LXFault::StrictGuard(Place, [] { throw 7; }), int);
    EXPECT_EQ(OnlyLine(), line);
    LogCapture::Lines().clear();
    EXPECT_THROW(LXFault::LenientGuard(Place, [] { throw 7; }), int);
    EXPECT_EQ(OnlyLine(), line);
}

TEST(Fault, LenientGuardEndsStandardExceptions) {
    const LogCapture log;
    EXPECT_TRUE(LXFault::LenientGuard(Place, false, [] { return true; }));
    EXPECT_TRUE(LogCapture::Lines().isEmpty());
    EXPECT_FALSE(LXFault::LenientGuard(Place, false, []() -> bool { throw std::bad_alloc(); }));
    EXPECT_TRUE(OnlyLine().endsWith(QStringLiteral("Exception content:\"std::bad_alloc\"")));
}

TEST(Fault, NestedGuardsLogOnceALevel) {
    const LogCapture log;
    LXFault::LenientGuard(Place, [] {
        LXFault::StrictGuard(LX_SITE_AT(99), [] { throw std::runtime_error("deep"); });
    });
    ASSERT_EQ(LogCapture::Lines().size(), 2);
    EXPECT_TRUE(
        LogCapture::Lines()[0].contains(QStringLiteral("line=99, file=\"tests/FaultTest.cpp\"")));
    EXPECT_TRUE(LogCapture::Lines()[1].contains(QStringLiteral("line=42, ")));
}
