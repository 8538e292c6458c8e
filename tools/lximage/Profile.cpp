#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXTransformImageColors.h"
#include "Metadata.h"
#include "Picture.h"
#include "Progress.h"
#include "RMCMSTransform.h"
#include "Streams.h"

#include <QtCore/QtEndian>
#include <QtGui/QColorSpace>

#include <cstdint>
#include <cstdlib>

namespace {

/// Profiles that need no file.
const struct {
    const char* name;
    QColorSpace::NamedColorSpace space;
} namedProfiles[] = {
    {"srgb", QColorSpace::SRgb},
    {"srgb-linear", QColorSpace::SRgbLinear},
    {"adobe-rgb", QColorSpace::AdobeRgb},
    {"display-p3", QColorSpace::DisplayP3},
    {"prophoto-rgb", QColorSpace::ProPhotoRgb},
};

RMCMSProfile Named(QColorSpace::NamedColorSpace space) {
    RMCMSProfile profile;
    profile.FromByteArray(QColorSpace(space).iccProfile());
    return profile;
}

RMCMSProfile SRGB() {
    return Named(QColorSpace::SRgb);
}

/// The bytes of a named profile, or of a file.
QByteArray ProfileBytes(const QString& argument) {
    for (const auto& named : namedProfiles)
        if (argument == QLatin1String(named.name))
            return QColorSpace(named.space).iccProfile();
    return ReadBytes(argument);
}

/// A profile that both can be converted to: the library has no way between equal descriptions.
RMCMSProfile OtherThan(const RMCMSProfile& one, const RMCMSProfile& two) {
    for (const auto space :
         {QColorSpace::ProPhotoRgb, QColorSpace::DisplayP3, QColorSpace::AdobeRgb}) {
        const RMCMSProfile other = Named(space);
        if (other != one && other != two)
            return other;
    }
    return {}; // not reached: two profiles have two descriptions
}

/// Whether the profile holds all that a conversion takes. lcms2 opens profiles that are damaged.
bool Converts(const RMCMSProfile& profile) {
    return !RMCMSTransform(profile, OtherThan(profile, profile)).IsEmpty();
}

/// Whether the same numbers mean the same colours in both, up to rounding, whatever the profiles
/// are called and however they are written.
bool MeanTheSame(const RMCMSProfile& one, const RMCMSProfile& two) {
    const RMCMSProfile other = OtherThan(one, two);
    const RMCMSTransform fromOne(one, other), fromTwo(two, other);
    if (fromOne.IsEmpty() || fromTwo.IsEmpty())
        return false;
    const auto near = [](int a, int b) { return std::abs(a - b) <= 1; };
    constexpr int Step = 15;
    for (int r = 0; r < 256; r += Step)
        for (int g = 0; g < 256; g += Step)
            for (int b = 0; b < 256; b += Step) {
                LXRGBA32i p{std::uint8_t(b), std::uint8_t(g), std::uint8_t(r), 255}, q = p;
                fromOne(p);
                fromTwo(q);
                if (!near(p.red, q.red) || !near(p.green, q.green) || !near(p.blue, q.blue))
                    return false;
            }
    return true;
}

/// Reads a profile for RGB pixels. Throws Failure for anything else, in the name of `subject`.
RMCMSProfile ReadProfile(const QByteArray& icc, const QString& subject) {
    const auto fail = [&subject](const char* reason) {
        throw Failure{subject, QString::fromLatin1(reason)};
    };
    RMCMSProfile profile;
    if (icc.isEmpty())
        fail("empty file");
    if (!profile.FromByteArray(icc))
        fail("not an ICC profile");
    if (qFromBigEndian<quint32>(icc.constData()) > quint32(icc.size()))
        fail("truncated colour profile");
    if (!IsForRGB(profile))
        fail("the colour profile is not for RGB");
    if (!Converts(profile))
        fail("damaged colour profile");
    return profile;
}

void Convert(Picture& picture, const RMCMSProfile& target, const QString& name) {
    const auto fail = [&name](const char* reason) {
        throw Failure{name, QString::fromLatin1(reason)};
    };
    const RMCMSProfile own = picture.icc.isEmpty() ? SRGB() : ReadProfile(picture.icc, name);
    if (own == target) { // to the library, which has no way between them then
        if (!MeanTheSame(own, target))
            fail("cannot convert between different profiles of the same description");
        return;
    }
    const RMCMSTransform transform(own, target);
    if (transform.IsEmpty())
        fail("its colours cannot be converted to this profile");
    LXTransformImageColors<LXImageRGBA32i, RMCMSTransform>()(
        picture.pixels, LXImageRect(picture.pixels), transform);
}

QString Description() {
    QString text = QStringLiteral(
        "Changes the colour profile of a picture. ICC is the file of a profile, or one of:\n\n ");
    for (const auto& named : namedProfiles)
        text += QLatin1Char(' ') + QLatin1String(named.name);
    return text;
}

} // namespace

int RunProfile(const Command& command, const QStringList& arguments) {
    const QString assign = QStringLiteral("assign"), convert = QStringLiteral("convert-to");
    CommandLine line(command, Description());
    line.AddOption({assign,
                    QStringLiteral("Say that the pixels are in this profile. They stay as they are "
                                   "and read as other colours."),
                    QStringLiteral("ICC")});
    line.AddOption({convert,
                    QStringLiteral("Bring the pixels into this profile. The colours stay, as far "
                                   "as it has them. A picture without a profile counts as sRGB."),
                    QStringLiteral("ICC")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    if (line.IsSet(assign) == line.IsSet(convert))
        throw UsageError{QStringLiteral("give either --assign or --convert-to")};
    const QString in = line.Files().at(0), out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));
    const QString wanted = line.Value(line.IsSet(assign) ? assign : convert);
    const QByteArray icc = ProfileBytes(wanted);
    const RMCMSProfile profile = ReadProfile(icc, InputName(wanted));

    Progress progress(QStringLiteral("profile"), 3);
    Picture picture = LoadPicture(in);
    progress.SetValue(1);
    if (line.IsSet(convert))
        Convert(picture, profile, InputName(in));
    picture.pixels.SetProfile(profile);
    picture.icc = icc;
    CorrectColorSpace(picture.exif, MeanTheSame(profile, SRGB()));
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
