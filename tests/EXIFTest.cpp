#include "RMEXIFElement.h"
#include "support/ReferenceEXIF.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>

#include <gtest/gtest.h>

#include <climits>
#include <string>

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
    int kind = 0;
    for (const auto& row : Reference::EXIFKinds) {
        EXPECT_EQ(RMEXIFElement::GetTag(Type(kind)), row.tag) << kind;
        EXPECT_EQ(RMEXIFElement::GetTypeName(Type(kind)).toStdString(), row.name) << kind;
        const std::string description = RMEXIFElement::GetDescription(Type(kind)).toStdString();
        if (row.description) {
            EXPECT_EQ(description, row.description) << kind;
        }
        EXPECT_GT(description.size(), 10U) << kind;
        EXPECT_EQ(description.back(), '.') << kind;
        ++kind;
    }
    EXPECT_EQ(kind, 80);
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
