#include "LXImage.h"
#include "support/LogCapture.h"
#include "support/TestPool.h"

#include <QtGui/QColorSpace>

#include <gtest/gtest.h>

#include <utility>

namespace {

QByteArray ICC(QColorSpace::NamedColorSpace name) {
    return QColorSpace(name).iccProfile();
}

QString Name(const RMCMSProfile& profile) {
    return profile.GetInfo();
}

} // namespace

TEST(CMSProfile, CopiesShareWhatIsLoadedAndEmptyAlone) {
    RMCMSProfile profile;
    EXPECT_TRUE(profile.IsEmpty());
    EXPECT_TRUE(profile.Load(nullptr, 0));
    EXPECT_EQ(profile.GetMemSize(), 0);
    EXPECT_TRUE(profile.ToByteArray().isEmpty());
    EXPECT_EQ(Name(profile), QString());
    ASSERT_TRUE(profile.FromByteArray(ICC(QColorSpace::SRgb)));
    const QString sRGB = Name(profile);
    EXPECT_TRUE(sRGB.startsWith(QStringLiteral("sRGB")));
    EXPECT_EQ(sRGB.back(), QChar(0)) << "the description keeps its terminating zero";

    RMCMSProfile copy(profile);
    ASSERT_TRUE(copy.FromByteArray(ICC(QColorSpace::AdobeRgb)));
    EXPECT_NE(Name(profile), sRGB) << "all copies see what one of them loads";
    EXPECT_EQ(Name(profile), Name(copy));
    const QString adobe = Name(copy);
    EXPECT_FALSE(copy.FromByteArray(QByteArray(200, 'x')));
    EXPECT_FALSE(copy.Load("x", -1));
    EXPECT_EQ(Name(copy), adobe) << "what is no profile changes nothing";
    EXPECT_TRUE(copy.Load(nullptr, 0));
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_EQ(Name(profile), adobe) << "emptying is for one copy alone";

    RMCMSProfile fresh;
    EXPECT_FALSE(fresh.FromByteArray(QByteArray(200, 'x')));
    EXPECT_TRUE(fresh.IsEmpty());
}

TEST(CMSProfile, SavesWhatItLoaded) {
    RMCMSProfile profile;
    ASSERT_TRUE(profile.FromByteArray(ICC(QColorSpace::SRgb)));
    const int size = profile.GetMemSize();
    ASSERT_GT(size, 0);
    QByteArray buffer(size, 'q');
    EXPECT_EQ(profile.Save(buffer.data(), size - 1), -1);
    EXPECT_EQ(buffer, QByteArray(size, 'q'));
    EXPECT_EQ(profile.Save(buffer.data(), size), size);
    RMCMSProfile again;
    ASSERT_TRUE(again.FromByteArray(profile.ToByteArray()));
    EXPECT_EQ(Name(again), Name(profile));
}

TEST(CMSProfile, MovesLeaveAnEmptyOne) {
    RMCMSProfile profile;
    ASSERT_TRUE(profile.FromByteArray(ICC(QColorSpace::SRgb)));
    const RMCMSProfile taken(std::move(profile));
    EXPECT_TRUE(profile.IsEmpty());
    EXPECT_EQ(profile.Save(nullptr, 0), 0);
    const RMCMSProfile copy(profile);
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_TRUE(profile.FromByteArray(ICC(QColorSpace::SRgb)));
    profile = taken;
    EXPECT_EQ(Name(profile), Name(taken));
}

TEST(CMSProfile, TravelsWithAnImage) {
    const TestPool pool;
    RMCMSProfile profile;
    ASSERT_TRUE(profile.FromByteArray(ICC(QColorSpace::SRgb)));
    QString name;
    LXImageRGBA32i copy(1, 1);
    {
        LXImageRGBA32i image(5, 5);
        image.SetProfile(profile);
        profile = RMCMSProfile();
        name = Name(image.GetProfile());
        copy = image;
    }
    EXPECT_EQ(Name(copy.GetProfile()), name);
    EXPECT_FALSE(name.isEmpty());
}

TEST(EXIFElement, IsAValue) {
    RMEXIFElement element(RMEXIFElement::Artist, QStringLiteral("first"));
    RMEXIFElement copy(element);
    copy.SetValue(QStringLiteral("second"));
    EXPECT_EQ(element.GetValue().toString(), QStringLiteral("first"));
    RMEXIFElement& self = copy;
    copy = self;
    EXPECT_EQ(copy.ToRawDataValue(), QByteArray("second"));
    element = copy;
    EXPECT_EQ(element.GetValue().toString(), QStringLiteral("second"));
    EXPECT_EQ(element.GetType(), RMEXIFElement::Artist);
    EXPECT_EQ(RMEXIFElement::SceneType, 79);
    EXPECT_EQ(RMEXIFElement::IPTCNAA, 40);
    EXPECT_EQ(RMEXIFElement(RMEXIFElement::Unknown, 5).ToRawDataValue(), QByteArray("5"));
}
