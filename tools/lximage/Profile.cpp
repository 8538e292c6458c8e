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

RMCMSProfile SRGB() {
    RMCMSProfile profile;
    profile.FromByteArray(QColorSpace(QColorSpace::SRgb).iccProfile());
    return profile;
}

/// The bytes of a named profile, or of a file.
QByteArray ProfileBytes(const QString& argument) {
    for (const auto& named : namedProfiles)
        if (argument == QLatin1String(named.name))
            return QColorSpace(named.space).iccProfile();
    return ReadBytes(argument);
}

/// Whether the profile holds all that a conversion takes. lcms2 opens profiles that are damaged.
bool Converts(const RMCMSProfile& profile) {
    return profile == SRGB() || !RMCMSTransform(profile, SRGB()).IsEmpty();
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
    // The library tells profiles by their descriptions, which end in a zero.
    if (own == target && own.GetInfo().size() <= 1)
        fail("cannot convert between profiles without a description");
    const RMCMSTransform transform(own, target);
    if (transform.IsEmpty() && own != target)
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
    CorrectColorSpace(picture.exif, profile == SRGB());
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
