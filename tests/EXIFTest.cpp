#include "RMEXIFElement.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>

#include <gtest/gtest.h>

#include <climits>

namespace {

using Type = RMEXIFElement::Type;

/// Knows one name and one description.
class Catalogue : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char* disambiguation,
                      int n) const override {
        if (qstrcmp(context, "QObject") != 0 || disambiguation || n != -1)
            return {};
        if (qstrcmp(text, "Exposure time") == 0)
            return QStringLiteral("Belichtungszeit");
        return qstrcmp(text, "The kind of light source.") == 0 ? QStringLiteral("Lichtart")
                                                               : QString();
    }
};

} // namespace

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

TEST(EXIFElement, KindsHaveTagsNamesAndDescriptions) {
    const struct {
        int kind;
        unsigned int tag;
        const char* name;
        const char* description; // how it begins or ends
    } rows[] = {
        {0, 0x0000, "Unkonwn", "An unkonwn EXIF tag."},
        {1, 0x0100, "Image width", "a JPEG marker is used instead of this tag."},
        {8, 0x010e, "Image title", "It may be a comment such as \"1988 company picnic\" or"},
        {15, 0x0117, "Bytes per compressed strip", "The total number of bytes in each strip."},
        {26, 0x0156, "Transfer range", "Expands the range"},
        {30, 0x0211, "Color space transformation matrix coefficients", "The matrix coefficients"},
        {41, 0x8773, "ICC profile", "Contains an InterColor Consortium (ICC) format color space"},
        {54, 0x9204, "Exposure bias", "The exposure bias. The units is the APEX value."},
        {63, 0x9290, "DateTime subseconds", "fractions of seconds for the <DateTime> tag."},
        {73, 0xa20f, "Focal plane Y resolution", "in the image height (V) direction per"},
        {78, 0xa300, "File source", "this tag value of this tag always be set to 3,"},
        {79, 0xa301, "Scene type", "Indicates the type of scene."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(RMEXIFElement::GetTag(Type(row.kind)), row.tag);
        EXPECT_EQ(RMEXIFElement::GetTypeName(Type(row.kind)), QString::fromLatin1(row.name));
        const QString description = RMEXIFElement::GetDescription(Type(row.kind));
        EXPECT_TRUE(description.contains(QLatin1String(row.description))) << row.kind;
    }
    for (int kind = 0; kind < 80; ++kind) {
        EXPECT_FALSE(RMEXIFElement::GetTypeName(Type(kind)).isEmpty()) << kind;
        EXPECT_TRUE(RMEXIFElement::GetDescription(Type(kind)).endsWith(QLatin1Char('.'))) << kind;
        EXPECT_TRUE(kind == 0 ||
                    RMEXIFElement::GetTag(Type(kind)) > RMEXIFElement::GetTag(Type(kind - 1)))
            << kind;
    }
    for (const int beyond : {80, 81, -1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(RMEXIFElement::GetTag(Type(beyond)), 0U);
        EXPECT_TRUE(RMEXIFElement::GetTypeName(Type(beyond)).isNull());
        EXPECT_TRUE(RMEXIFElement::GetDescription(Type(beyond)).isNull());
    }
}

TEST(EXIFElement, TranslatorsReplaceNamesAndDescriptions) {
    Catalogue catalogue;
    ASSERT_TRUE(QCoreApplication::installTranslator(&catalogue));
    const QString name = RMEXIFElement::GetTypeName(RMEXIFElement::ExposureTime);
    const QString other = RMEXIFElement::GetTypeName(RMEXIFElement::FNumber);
    const QString description = RMEXIFElement::GetDescription(RMEXIFElement::LightSource);
    QCoreApplication::removeTranslator(&catalogue);
    EXPECT_EQ(name, QStringLiteral("Belichtungszeit"));
    EXPECT_EQ(other, QStringLiteral("F number"));
    EXPECT_EQ(description, QStringLiteral("Lichtart"));
}
