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
#include <functional>
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

/// lcms2 called directly, a pixel at a time.
class PlainTransform {
public:
    PlainTransform(const QByteArray& from, const QByteArray& to) {
        const cmsHPROFILE source = Open(from), target = Open(to);
        m_transform = cmsCreateTransform(source, TYPE_BGRA_8, target, TYPE_BGRA_8, 0, 0);
        cmsCloseProfile(source);
        cmsCloseProfile(target);
    }
    ~PlainTransform() { cmsDeleteTransform(m_transform); }
    PlainTransform(const PlainTransform&) = delete;
    PlainTransform& operator=(const PlainTransform&) = delete;

    QImage operator()(QImage image) const {
        for (int i = 0; i < image.width() * image.height(); ++i) {
            unsigned char* const pixel = image.bits() + 4 * i;
            cmsDoTransform(m_transform, pixel, pixel, 1);
        }
        return image;
    }

private:
    static cmsHPROFILE Open(const QByteArray& bytes) {
        return cmsOpenProfileFromMem(bytes.constData(), cmsUInt32Number(bytes.size()));
    }
    cmsHTRANSFORM m_transform;
};

bool WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size();
}

/// The log as "file:line. text".
std::vector<std::string> Log() {
    std::vector<std::string> lines;
    for (const QString& line : qAsConst(LogCapture::Lines())) {
        const QString number =
            line.section(QStringLiteral("Line="), 1).section(QLatin1Char(','), 0, 0);
        const QString file = line.section(QLatin1Char('"'), 1, 1);
        lines.push_back((file + QLatin1Char(':') + number).toStdString() +
                        line.section(QLatin1Char('"'), 2).toStdString());
    }
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
    const int size = profile.GetMemSize();
    ASSERT_GT(size, 0);
    QByteArray buffer(size, 'q');
    EXPECT_EQ(profile.Save(buffer.data(), size - 1), -1);
    EXPECT_EQ(buffer, QByteArray(size, 'q'));
    EXPECT_EQ(profile.Save(buffer.data(), size), size);
    EXPECT_EQ(buffer, profile.ToByteArray());
    EXPECT_EQ(Loaded(buffer), profile);
}

/// lcms2 saves a tag that was read in its own words. Qt's bytes are not those that it would write.
TEST(CMSProfile, GrowsWithItsUse) {
    const QByteArray icc = QColorSpace(QColorSpace::SRgb).iccProfile();
    const RMCMSProfile profile = Loaded(icc), wide = Loaded(Wide());
    const int first = profile.GetMemSize();
    EXPECT_NE(profile, wide);
    EXPECT_FALSE(RMCMSTransform(profile, wide).IsEmpty());
    const int second = profile.GetMemSize();
    ASSERT_GT(second, first);
    QByteArray buffer(second, 'q');
    EXPECT_EQ(profile.Save(buffer.data(), first), -1);
    EXPECT_EQ(buffer, QByteArray(second, 'q'));
    EXPECT_EQ(profile.Save(buffer.data(), second), second);
    EXPECT_EQ(buffer, profile.ToByteArray());
    const QImage picture = RandomQImage(40, 40, 4);
    const QImage grown = PlainTransform(buffer, Wide())(picture),
                 plain = PlainTransform(icc, Wide())(picture);
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
    constexpr int Threads = 4;
    for (int round = 0; round < 500 && !testing::Test::HasFailure(); ++round) {
        const RMCMSProfile profile = Loaded(icc);
        const std::function<void()> ways[Threads] = {
            [&] { EXPECT_EQ(Name(profile), name); },
            [&] { EXPECT_EQ(Name(Loaded(profile.ToByteArray())), name); },
            [&] {
                LXRGBA32i pixel = before;
                RMCMSTransform(profile, wide)(pixel);
                EXPECT_EQ(pixel, there);
                EXPECT_GT(profile.GetMemSize(), 0);
            },
            [&] {
                EXPECT_FALSE(RMCMSTransform(wide, profile).IsEmpty());
                EXPECT_EQ(profile.GetColorSpace(), quint32(cmsSigRgbData));
                QByteArray bytes(10000, 'q');
                bytes.truncate(profile.Save(bytes.data(), bytes.size()));
                EXPECT_EQ(Name(Loaded(bytes)), name);
            }};
        std::atomic<int> missing{Threads};
        std::vector<std::thread> threads;
        for (const auto& way : ways)
            threads.emplace_back([&missing, &way] {
                for (--missing; missing > 0;)
                    std::this_thread::yield();
                way();
            });
        for (std::thread& thread : threads)
            thread.join();
    }
}

TEST(CMSProfile, Files) {
    const QTemporaryDir folder;
    const QString good = folder.filePath(QStringLiteral("good.icc"));
    const QString empty = folder.filePath(QStringLiteral("empty.icc"));
    const QString rubbish = folder.filePath(QStringLiteral("rubbish.icc"));
    const QString missing = folder.filePath(QStringLiteral("missing.icc"));
    ASSERT_TRUE(WriteFile(empty, {}) && WriteFile(rubbish, QByteArray(500, 'x')));
    const QString huge = folder.filePath(QStringLiteral("huge.icc")); // and all of it a hole
    QFile hole(huge);
    ASSERT_TRUE(hole.open(QFile::WriteOnly) && hole.resize(qint64(1) << 31));
    ASSERT_TRUE(Loaded(SRGB()).Save(good));
    EXPECT_FALSE(RMCMSProfile().Save(missing));
    EXPECT_FALSE(QFileInfo::exists(missing)) << "an empty profile makes no file";
    EXPECT_FALSE(Loaded(SRGB()).Save(folder.filePath(QStringLiteral("no/folder"))));
    EXPECT_FALSE(Loaded(SRGB()).Save(QStringLiteral("/dev/full")));

    RMCMSProfile profile = Loaded(Wide());
    const RMCMSProfile copy = profile;
    for (const QString& path :
         {missing, rubbish, huge, folder.path(), QStringLiteral("/proc/self/mem")}) {
        EXPECT_FALSE(profile.Load(path)) << qPrintable(path);
        EXPECT_EQ(Name(profile), Name(Loaded(Wide()))) << qPrintable(path);
        RMCMSProfile fresh;
        EXPECT_FALSE(fresh.Load(path)) << qPrintable(path);
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
    const TestPool pool;
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
    const std::string size = "src/RMCMSProfile.cpp:127. Read profile info error.";
    const std::string text = "src/RMCMSProfile.cpp:132. Read profile info error.";
    EXPECT_EQ(Log(), (std::vector<std::string>{size, size, text}));
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
        const std::string file = "src/private/RMCMSProfile_p.cpp:";
        const std::string text = ". Could not copy a profile";
        EXPECT_EQ(Log(), (std::vector<std::string>{file + "58" + text, file + "69" + text,
                                                   file + "76" + text}));
    }
    EXPECT_EQ(FaultyCMS::OpenHandles(), before);
}

/// Whichever call of lcms2 fails, nothing is left open.
TEST(CMSProfile, LosesNoHandle) {
    const QByteArray one = SRGB(), other = Wide();
    const std::vector<std::function<void()>> operations = {
        [&] {
            RMCMSProfile profile;
            profile.FromByteArray(one);
            const RMCMSProfile copy = profile;
            profile.FromByteArray(other);
            profile.Load(nullptr, 0);
            profile = copy;
        },
        [&] {
            RMCMSProfile profile;
            profile.FromByteArray(one);
            const QByteArray bytes = profile.ToByteArray();
            EXPECT_TRUE(bytes.isEmpty() || bytes.size() == one.size());
            EXPECT_FALSE(profile.Save(QStringLiteral("/dev/full")));
        },
        [&] {
            RMCMSProfile from, to;
            from.FromByteArray(one);
            to.FromByteArray(other);
            LXRGBA32ColorProfileTransform pair(from, to);
            const LXRGBA32ColorProfileTransform copy(pair);
            pair = LXRGBA32ColorProfileTransform();
            pair = copy;
            LXRGBA32i pixel = {1, 2, 3, 4};
            pair(pixel);
            pair.Invert(pixel);
        }};
    const LogCapture log;
    const int before = FaultyCMS::OpenHandles();
    for (const auto& operation : operations) {
        int call = 0;
        do {
            FaultyCMS::FailAt(++call);
            operation();
            ASSERT_EQ(FaultyCMS::OpenHandles(), before) << "call " << call;
        } while (FaultyCMS::HasFailed());
        EXPECT_GT(call, 2);
    }
    FaultyCMS::FailAt(0);
}

TEST(CMSProfile, SurvivesDamagedProfiles) {
    const TestPool pool;
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
    const TestPool pool;
    const QByteArray one = SRGB(), other = Wide();
    const LXRGBA32ColorProfileTransform pair(Loaded(one), Loaded(other));
    const RMCMSTransform forward(Loaded(one), Loaded(other));
    const QImage picture = RandomQImage(300, 200, 5);
    const QImage there = PlainTransform(one, other)(picture);
    const QImage back = PlainTransform(other, one)(picture);
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
        EXPECT_TRUE(SamePixels(tiled, ConvertImage<QImage, Image>(expected)));
        EXPECT_TRUE(SamePixels(before, ConvertImage<QImage, Image>(picture))) << "the copy";
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
    pair(opaque);
    EXPECT_EQ(
        opaque,
        PlainTransform(one, other)(
            picture.convertToFormat(QImage::Format_RGB32).convertToFormat(QImage::Format_ARGB32)));
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
    const std::pair<RMCMSProfile, RMCMSProfile> empties[] = {
        {none, none},
        {none, wide},
        {wide, none},
        {wide, copy},
        {wide, Loaded(CMYK())},
        {gray, wide},
        {lab, Loaded(Finish(cmsCreateLab4Profile(nullptr), "another lab"))},
        {wide, Loaded(SRGB("wide"))}};
    for (const auto& [from, to] : empties)
        EXPECT_TRUE(RMCMSTransform(from, to).IsEmpty()) << Name(from) << " to " << Name(to);
    ASSERT_FALSE(RMCMSTransform(ordinary, wide).IsEmpty());

    const TestPool pool;
    const LXRGBA32ColorProfileTransform pair(wide, copy);
    QImage opaque(4, 4, QImage::Format_RGB32);
    pair(opaque);
    pair.Invert(opaque);
    EXPECT_EQ(opaque.format(), QImage::Format_RGB32);
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
    const TestPool pool;
    const auto pair = [] {
        return new LXRGBA32ColorProfileTransform(Loaded(SRGB()), Loaded(Wide()));
    };
    LXColorTransformStack stack;
    stack.Push(pair());
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
    EXPECT_EQ(transformed, PlainTransform(SRGB(), Wide())(picture)) << "a QImage is transformed";
    LXRGBA32i pixel = same[0];
    stack(pixel);
    EXPECT_NE(pixel, same[0]) << "a pixel too";
}
