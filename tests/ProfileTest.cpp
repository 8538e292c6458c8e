#include "LXColorTransformStack.h"
#include "LXConvertImage.h"
#include "LXRGBA32ColorProfileTransform.h"
#include "private/RMCMSProfile_p.h"
#include "support/FaultyCMS.h"
#include "support/LogCapture.h"
#include "support/Pictures.h"
#include "support/TestPool.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtGui/QColor>
#include <QtGui/QColorSpace>

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Image = LXImageRGBA32i;
using HandleHolder = RMCMSProfile::Private::HandleHolder;

std::string Name(const RMCMSProfile& profile) {
    return profile.GetInfo().toStdString();
}

/// The bytes of a profile, which is given another description, or none for a null one, and closed.
QByteArray Finish(cmsHPROFILE profile, const char* description) {
    cmsMLU* text = description ? cmsMLUalloc(nullptr, 1) : nullptr;
    if (text)
        cmsMLUsetASCII(text, "en", "US", description);
    cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
    cmsMLUfree(text);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    QByteArray bytes(int(size), '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

QByteArray SRGB(const char* description = "ordinary") {
    return Finish(cmsCreate_sRGBProfile(), description);
}

/// An RGB profile with more saturated primaries and another tone curve.
QByteArray Wide(const char* description = "wide") {
    const cmsCIExyY white = {0.3127, 0.3290, 1};
    const cmsCIExyYTRIPLE primaries = {{0.70, 0.29, 1}, {0.17, 0.79, 1}, {0.13, 0.05, 1}};
    cmsToneCurve* const gamma = cmsBuildGamma(nullptr, 1.8);
    cmsToneCurve* const curves[3] = {gamma, gamma, gamma};
    const cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsFreeToneCurve(gamma);
    return Finish(profile, description);
}

QByteArray CMYK() {
    const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetColorSpace(profile, cmsSigCmykData);
    return Finish(profile, "inks");
}

RMCMSProfile Loaded(const QByteArray& bytes) {
    RMCMSProfile profile;
    EXPECT_TRUE(profile.FromByteArray(bytes));
    return profile;
}

/// What lcms2 makes of the picture when it is called directly, a pixel at a time.
QImage Plain(const QByteArray& from, const QByteArray& to, QImage image) {
    const auto open = [](const QByteArray& bytes) {
        return cmsOpenProfileFromMem(bytes.constData(), cmsUInt32Number(bytes.size()));
    };
    const cmsHPROFILE source = open(from), target = open(to);
    const cmsHTRANSFORM transform =
        cmsCreateTransform(source, TYPE_BGRA_8, target, TYPE_BGRA_8, 0, 0);
    for (int i = 0; i < image.width() * image.height(); ++i) {
        unsigned char* const pixel = image.bits() + 4 * i;
        cmsDoTransform(transform, pixel, pixel, 1);
    }
    cmsDeleteTransform(transform);
    cmsCloseProfile(source);
    cmsCloseProfile(target);
    return image;
}

/// Saves into a buffer of the profile's size, and into none of a smaller one.
void ExpectSaves(const RMCMSProfile& profile, int smaller) {
    const int size = profile.GetMemSize();
    ASSERT_GT(size, smaller);
    QByteArray buffer(size, 'q');
    EXPECT_EQ(profile.Save(buffer.data(), smaller), -1);
    EXPECT_EQ(buffer, QByteArray(size, 'q'));
    EXPECT_EQ(profile.Save(buffer.data(), size), size);
    EXPECT_EQ(buffer, profile.ToByteArray());
    EXPECT_EQ(Loaded(buffer), profile);
}

bool WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size();
}

/// The log from the line numbers on.
std::vector<std::string> Log() {
    std::vector<std::string> lines;
    for (const QString& line : qAsConst(LogCapture::Lines()))
        lines.push_back(line.section(QStringLiteral("Line="), 1).toStdString());
    return lines;
}

} // namespace

TEST(CMSProfile, CopiesShareWhatIsLoadedAndEmptyAlone) {
    RMCMSProfile profile;
    EXPECT_TRUE(profile.IsEmpty());
    EXPECT_TRUE(profile.Load(nullptr, 0));
    EXPECT_EQ(profile.GetMemSize(), 0);
    EXPECT_EQ(profile.GetColorSpace(), 0U);
    EXPECT_TRUE(profile.ToByteArray().isEmpty());
    EXPECT_EQ(Name(profile), "");
    ASSERT_TRUE(profile.FromByteArray(SRGB()));
    EXPECT_EQ(Name(profile), std::string("ordinary", 9)) << "with its terminating zero";
    EXPECT_EQ(profile.GetColorSpace(), quint32(cmsSigRgbData));

    RMCMSProfile copy(profile);
    ASSERT_TRUE(copy.FromByteArray(Wide()));
    EXPECT_EQ(Name(profile), std::string("wide", 5)) << "copies see what one of them loads";
    EXPECT_FALSE(copy.FromByteArray(QByteArray(200, 'x')));
    EXPECT_FALSE(copy.Load("x", -1));
    EXPECT_EQ(Name(copy), Name(profile)) << "what is no profile changes nothing";
    EXPECT_TRUE(copy.Load(nullptr, 0));
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_FALSE(profile.IsEmpty()) << "emptying is for one copy alone";

    RMCMSProfile fresh;
    EXPECT_FALSE(fresh.FromByteArray(QByteArray(200, 'x')));
    EXPECT_TRUE(fresh.IsEmpty());
    RMCMSProfile other = fresh;
    EXPECT_TRUE(other.FromByteArray(SRGB()));
    EXPECT_TRUE(fresh.IsEmpty()) << "there is nothing to share before a profile is loaded";
}

TEST(CMSProfile, SavesWhatItLoaded) {
    const RMCMSProfile profile = Loaded(SRGB());
    ExpectSaves(profile, profile.GetMemSize() - 1);
}

/// lcms2 saves a tag that was read in its own words. Qt's bytes are not those that it would write.
TEST(CMSProfile, GrowsWithItsUse) {
    const QByteArray icc = QColorSpace(QColorSpace::SRgb).iccProfile();
    const RMCMSProfile profile = Loaded(icc), wide = Loaded(Wide());
    const int first = profile.GetMemSize();
    EXPECT_NE(profile, wide);
    EXPECT_FALSE(RMCMSTransform(profile, wide).IsEmpty());
    ExpectSaves(profile, first);
    const QImage picture = RandomQImage(40, 40, 4);
    const QImage grown = Plain(profile.ToByteArray(), Wide(), picture),
                 plain = Plain(icc, Wide(), picture);
    for (int i = 0; i < 4 * 40 * 40; ++i)
        ASSERT_NEAR(grown.constBits()[i], plain.constBits()[i], 1) << "but for rounding, at " << i;
}

TEST(CMSProfile, NeverTellsOfMoreThanItWrote) {
    const RMCMSProfile profile = Loaded(SRGB());
    const auto size = unsigned(profile.GetMemSize());
    QByteArray buffer(int(size), 'q');
    FaultyCMS::AnswerSizes({size - 8, size}); // grown since it was asked for
    EXPECT_EQ(profile.Save(buffer.data(), buffer.size()), -1);
    FaultyCMS::AnswerSizes({size - 8, size});
    EXPECT_EQ(profile.ToByteArray(), QByteArray());
    EXPECT_EQ(profile.Save(buffer.data(), buffer.size()), int(size));
    for (const unsigned int large : {unsigned(INT_MAX) + 1, UINT_MAX}) {
        FaultyCMS::AnswerSizes({large, large, large});
        EXPECT_EQ(profile.GetMemSize(), -1);
        EXPECT_EQ(profile.Save(buffer.data(), buffer.size()), -1);
        EXPECT_EQ(profile.ToByteArray(), QByteArray());
    }
    FaultyCMS::AnswerSizes({});
}

/// Each round has a profile that nobody has looked at, and starts four ways of doing so at once.
TEST(CMSProfile, ThreadsReadItTogether) {
    const QByteArray icc = QColorSpace(QColorSpace::SRgb).iccProfile();
    const RMCMSProfile wide = Loaded(Wide());
    const std::string name = Name(Loaded(icc));
    const LXRGBA32i before{10, 200, 90, 77};
    LXRGBA32i there = before;
    RMCMSTransform(Loaded(icc), wide)(there);
    for (int round = 0; round < 500 && !testing::Test::HasFailure(); ++round) {
        const RMCMSProfile profile = Loaded(icc);
        std::atomic<int> missing{4};
        const auto start = [&missing](const auto& way) {
            return std::thread([&missing, way] {
                for (--missing; missing > 0;)
                    std::this_thread::yield();
                way();
            });
        };
        std::thread threads[] = {
            start([&] { EXPECT_EQ(Name(profile), name); }),
            start([&] { EXPECT_EQ(Name(Loaded(profile.ToByteArray())), name); }), start([&] {
                LXRGBA32i pixel = before;
                RMCMSTransform(profile, wide)(pixel);
                EXPECT_EQ(pixel, there);
                EXPECT_GT(profile.GetMemSize(), 0);
            }),
            start([&] {
                EXPECT_FALSE(RMCMSTransform(wide, profile).IsEmpty());
                EXPECT_EQ(profile.GetColorSpace(), quint32(cmsSigRgbData));
                QByteArray bytes(10000, 'q');
                bytes.truncate(profile.Save(bytes.data(), bytes.size()));
                EXPECT_EQ(Name(Loaded(bytes)), name);
            })};
        for (std::thread& thread : threads)
            thread.join();
    }
}

TEST(CMSProfile, Files) {
    const QTemporaryDir folder;
    const auto path = [&](const char* name) { return folder.filePath(QString::fromLatin1(name)); };
    const QString good = path("good.icc"), empty = path("empty.icc"), missing = path("missing.icc"),
                  rubbish = path("rubbish.icc"), huge = path("huge.icc");
    ASSERT_TRUE(WriteFile(empty, {}) && WriteFile(rubbish, QByteArray(500, 'x')));
    // All of it is a hole.
    QFile hole(huge);
    ASSERT_TRUE(hole.open(QFile::WriteOnly) && hole.resize(qint64(1) << 31));
    ASSERT_TRUE(Loaded(SRGB()).Save(good));
    EXPECT_FALSE(RMCMSProfile().Save(missing));
    EXPECT_FALSE(QFileInfo::exists(missing)) << "an empty profile makes no file";
    EXPECT_FALSE(Loaded(SRGB()).Save(path("no/folder")));
    EXPECT_FALSE(Loaded(SRGB()).Save(QStringLiteral("/dev/full")));

    RMCMSProfile profile = Loaded(Wide());
    const RMCMSProfile copy = profile;
    for (const QString& bad :
         {missing, rubbish, huge, folder.path(), QStringLiteral("/proc/self/mem")}) {
        EXPECT_FALSE(profile.Load(bad)) << qPrintable(bad);
        EXPECT_EQ(profile, Loaded(Wide())) << qPrintable(bad);
        RMCMSProfile fresh;
        EXPECT_FALSE(fresh.Load(bad)) << qPrintable(bad);
        EXPECT_TRUE(fresh.IsEmpty());
    }
    EXPECT_TRUE(profile.Load(good));
    EXPECT_EQ(copy.ToByteArray(), Loaded(SRGB()).ToByteArray()) << "copies see the file";
    EXPECT_TRUE(profile.Load(empty));
    EXPECT_TRUE(profile.IsEmpty());
    EXPECT_TRUE(copy.IsEmpty()) << "a file replaces what is shared, an empty file too";
    EXPECT_TRUE(profile.Load(good));
    EXPECT_FALSE(copy.IsEmpty());
}

TEST(CMSProfile, MovesLeaveAnEmptyOne) {
    RMCMSProfile profile = Loaded(SRGB());
    const RMCMSProfile taken(std::move(profile));
    EXPECT_TRUE(profile.IsEmpty());
    EXPECT_EQ(profile.Save(nullptr, 0), 0);
    EXPECT_TRUE(RMCMSTransform(profile, taken).IsEmpty());
    const RMCMSProfile copy(profile);
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_TRUE(profile.FromByteArray(SRGB()));
    profile = taken;
    EXPECT_EQ(profile, taken);
}

TEST(CMSProfile, TravelsWithAnImage) {
    RMCMSProfile profile = Loaded(SRGB());
    Image copy(1, 1);
    {
        Image image(5, 5);
        image.SetProfile(profile);
        profile = RMCMSProfile();
        copy = image;
    }
    EXPECT_EQ(copy.GetProfile(), Loaded(SRGB()));
}

TEST(CMSProfile, ComparesDescriptionsAlone) {
    const RMCMSProfile profile = Loaded(SRGB()), copy = profile;
    EXPECT_EQ(profile, copy);
    EXPECT_EQ(Loaded(SRGB("same")), Loaded(Wide("same")));
    EXPECT_NE(Loaded(SRGB("one")), Loaded(SRGB("two")));
    EXPECT_EQ(RMCMSProfile(), RMCMSProfile());
    EXPECT_NE(profile, RMCMSProfile());
}

TEST(CMSProfile, LogsADescriptionThatCannotBeRead) {
    const LogCapture log;
    EXPECT_EQ(Name(Loaded(SRGB(nullptr))), "") << "a profile without one";
    const RMCMSProfile profile = Loaded(SRGB());
    for (const int call : {1, 2}) {
        FaultyCMS::FailAt(call);
        EXPECT_EQ(Name(profile), "");
    }
    const std::string rest = ", file=\"src/RMCMSProfile.cpp\". Read profile info error.";
    EXPECT_EQ(Log(), (std::vector<std::string>{"127" + rest, "127" + rest, "132" + rest}));
}

TEST(CMSProfile, HoldersCopyDeeply) {
    const int before = FaultyCMS::OpenHandles();
    {
        HandleHolder holder;
        EXPECT_FALSE(HandleHolder(holder).handle);
        const QByteArray bytes = SRGB();
        ASSERT_TRUE(holder.Load(bytes.constData(), unsigned(bytes.size())));
        const HandleHolder copy(holder);
        EXPECT_NE(copy.handle, holder.handle);
        ASSERT_TRUE(holder.Load(nullptr, 0));
        EXPECT_EQ(cmsGetColorSpace(copy.handle), cmsSigRgbData);

        const LogCapture log;
        for (const int call : {1, 2, 3}) {
            FaultyCMS::FailAt(call);
            EXPECT_THROW(HandleHolder{copy}, std::bad_alloc);
        }
        const std::string rest =
            ", file=\"src/private/RMCMSProfile_p.cpp\". Could not copy a profile";
        EXPECT_EQ(Log(), (std::vector<std::string>{"58" + rest, "69" + rest, "76" + rest}));
    }
    EXPECT_EQ(FaultyCMS::OpenHandles(), before);
}

/// Whichever call of lcms2 fails, nothing is left open.
TEST(CMSProfile, LosesNoHandle) {
    const QByteArray one = SRGB(), other = Wide();
    const auto operate = [&] {
        RMCMSProfile profile, to;
        profile.FromByteArray(one);
        const RMCMSProfile copy = profile;
        const QByteArray bytes = profile.ToByteArray();
        EXPECT_TRUE(bytes.isEmpty() || bytes.size() == one.size());
        EXPECT_FALSE(profile.Save(QStringLiteral("/dev/full")));
        to.FromByteArray(other);
        LXRGBA32ColorProfileTransform pair(profile, to);
        const LXRGBA32ColorProfileTransform copyOfPair(pair);
        pair = LXRGBA32ColorProfileTransform();
        pair = copyOfPair;
        LXRGBA32i pixel = {1, 2, 3, 4};
        pair(pixel);
        pair.Invert(pixel);
        profile.FromByteArray(other);
        profile.Load(nullptr, 0);
        profile = copy;
    };
    const LogCapture log;
    const int before = FaultyCMS::OpenHandles();
    int call = 0;
    do {
        FaultyCMS::FailAt(++call);
        operate();
        ASSERT_EQ(FaultyCMS::OpenHandles(), before) << "call " << call;
    } while (FaultyCMS::HasFailed());
    EXPECT_GT(call, 8);
    FaultyCMS::FailAt(0);
}

TEST(CMSProfile, SurvivesDamagedProfiles) {
    const QByteArray whole = Wide();
    std::vector<QByteArray> damaged;
    for (int length = 1; length < whole.size(); length += 64)
        damaged.push_back(whole.left(length));
    RandomPixels random(1);
    for (int i = 0; i < 500; ++i) {
        damaged.push_back(whole);
        for (unsigned int flips = 1 + random.Below(8); flips > 0; --flips) {
            char& byte = damaged.back().data()[random.Below(unsigned(whole.size()))];
            byte = char(byte ^ (1 << random.Below(8)));
        }
    }

    const LogCapture log;
    const RMCMSProfile old = Loaded(SRGB());
    int refused = 0, converted = 0;
    for (const QByteArray& bytes : damaged) {
        RMCMSProfile profile = Loaded(old.ToByteArray());
        if (!profile.FromByteArray(bytes)) {
            ++refused;
            ASSERT_EQ(profile, old);
            continue;
        }
        profile.GetInfo();
        profile.ToByteArray();
        const LXRGBA32ColorProfileTransform pair(old, profile);
        Image image = RandomImage(8, 1, 2);
        pair(image);
        pair.Invert(image);
        converted += !RMCMSTransform(profile, old).IsEmpty();
    }
    EXPECT_GT(refused, 20);
    EXPECT_GT(converted, 20);
}

TEST(CMSTransform, GivesWhatLCMSGives) {
    const QByteArray one = SRGB(), other = Wide();
    const LXRGBA32ColorProfileTransform pair(Loaded(one), Loaded(other));
    const RMCMSTransform forward(Loaded(one), Loaded(other));
    const QImage picture = RandomQImage(300, 200, 5);
    const QImage there = Plain(one, other, picture), back = Plain(other, one, picture);
    ASSERT_NE(there, picture);

    for (const bool inverse : {false, true}) {
        const QImage& expected = inverse ? back : there;
        const auto apply = [&](auto& subject) { inverse ? pair.Invert(subject) : pair(subject); };
        QImage image = picture;
        apply(image);
        EXPECT_EQ(image, expected);
        const Image before = ConvertImage<QImage, Image>(picture);
        Image tiled = before;
        apply(tiled);
        EXPECT_TRUE(SamePixels(tiled, expected));
        EXPECT_TRUE(SamePixels(before, picture)) << "the copy";
        for (int x = 0; x < 300; ++x) {
            LXRGBA32i pixel = before.GetColor(x, 9);
            apply(pixel);
            ASSERT_EQ(pixel, tiled.GetColor(x, 9)) << x;
            ASSERT_EQ(pixel.alpha, before.GetColor(x, 9).alpha) << x;
        }
    }
    for (int x = 0; x < 300; ++x) {
        QColor colour = QColor::fromRgba(picture.pixel(x, 9));
        forward(colour);
        ASSERT_EQ(colour.rgba(), there.pixel(x, 9)) << x;
    }
    QImage opaque = picture.convertToFormat(QImage::Format_RGB32);
    const QImage before = opaque.convertToFormat(QImage::Format_ARGB32);
    pair(opaque);
    EXPECT_EQ(opaque, Plain(one, other, before));
}

TEST(CMSTransform, CopiesAreWhole) {
    const LXRGBA32i pixel = {10, 200, 90, 77};
    RMCMSTransform first(Loaded(SRGB()), Loaded(Wide())), copy(first), assigned;
    EXPECT_TRUE(assigned.IsEmpty());
    assigned = copy;
    copy = RMCMSTransform();
    EXPECT_TRUE(copy.IsEmpty());
    RMCMSTransform& self = first;
    first = self;
    LXRGBA32i a = pixel, b = pixel;
    first(a);
    assigned(b);
    EXPECT_EQ(a, b);
    EXPECT_NE(a, pixel);
}

TEST(CMSTransform, IsEmptyWhereNothingIsToDo) {
    const RMCMSProfile ordinary = Loaded(SRGB()), wide = Loaded(Wide());
    const RMCMSProfile gray = Loaded(Finish(cmsCreateGrayProfile(cmsD50_xyY(), nullptr), "gray"));
    const RMCMSProfile lab = Loaded(Finish(cmsCreateLab4Profile(nullptr), "lab"));
    const RMCMSProfile none, copy = wide;
    const RMCMSProfile otherLab = Loaded(Finish(cmsCreateLab4Profile(nullptr), "another lab"));
    const std::pair<RMCMSProfile, RMCMSProfile> empties[] = {
        {none, none},           {none, wide}, {wide, none},    {wide, copy},
        {wide, Loaded(CMYK())}, {gray, wide}, {lab, otherLab}, {wide, Loaded(SRGB("wide"))}};
    for (const auto& [from, to] : empties)
        EXPECT_TRUE(RMCMSTransform(from, to).IsEmpty()) << Name(from) << " to " << Name(to);
    ASSERT_FALSE(RMCMSTransform(ordinary, wide).IsEmpty());

    const LXRGBA32ColorProfileTransform pair(wide, copy);
    QImage opaque(4, 4, QImage::Format_RGB32);
    pair(opaque);
    pair.Invert(opaque);
    EXPECT_EQ(opaque.format(), QImage::Format_RGB32);
    const TestPool pool;
    Image image(10, 10);
    const Image shared = image;
    pair(image);
    pair.Invert(image);
    EXPECT_EQ(pool.InUse(), 1U) << "no tile is detached for nothing";
    LXRGBA32i pixel = {1, 2, 3, 4};
    RMCMSTransform()(pixel);
    EXPECT_EQ(pixel, (LXRGBA32i{1, 2, 3, 4}));
    QColor colour = QColor::fromHslF(0.3, 0.4, 0.5);
    RMCMSTransform()(colour);
    EXPECT_EQ(colour, QColor::fromHslF(0.3, 0.4, 0.5));
}

TEST(CMSTransform, HasNoEffectOnBuffersAndSoOnTiledImagesInAStack) {
    LXColorTransformStack stack;
    stack.Push(new LXRGBA32ColorProfileTransform(Loaded(SRGB()), Loaded(Wide())));
    const Image before = RandomImage(150, 20, 3);
    Image image = before;
    stack(image);
    stack.Invert(image);
    EXPECT_TRUE(SamePixels(image, before));
    std::vector<LXRGBA32i> buffer(16, LXRGBA32i{10, 200, 90, 77});
    const std::vector<LXRGBA32i> same = buffer;
    stack(buffer.data(), 16);
    stack.Invert(buffer.data(), 16);
    EXPECT_EQ(buffer, same);

    const QImage picture = RandomQImage(20, 20, 3);
    QImage transformed = picture;
    stack(transformed);
    EXPECT_EQ(transformed, Plain(SRGB(), Wide(), picture)) << "a QImage is transformed";
    LXRGBA32i pixel = same[0];
    stack(pixel);
    EXPECT_NE(pixel, same[0]) << "a pixel too";
}
