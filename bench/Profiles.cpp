#include "LXRGBA32ColorProfileTransform.h"
#include "Pairs.h"
#include "Pictures.h"

#include <QtGui/QColorSpace>

#include <lcms2.h>

/// The way from one profile to another over 12.58 million pixels. The peer: lcms2 itself, called
/// for each row of one flat buffer.

namespace {

using Bench::Count;
using Bench::Pixels;

QByteArray ICC(QColorSpace::NamedColorSpace space) {
    return QColorSpace(space).iccProfile();
}

RMCMSProfile Profile(QColorSpace::NamedColorSpace space) {
    RMCMSProfile profile;
    profile.FromByteArray(ICC(space));
    return profile;
}

void ProfilesOnTiles(benchmark::State& state) {
    LXImageRGBA32i image = Bench::TiledPicture();
    const LXRGBA32ColorProfileTransform transform(Profile(QColorSpace::SRgb),
                                                  Profile(QColorSpace::DisplayP3));
    for (auto _ : state)
        transform(image);
    Count(state, Pixels);
}
BENCHMARK(ProfilesOnTiles);

void ProfilesOnQImage(benchmark::State& state) {
    QImage image = Bench::Picture().copy();
    const LXRGBA32ColorProfileTransform transform(Profile(QColorSpace::SRgb),
                                                  Profile(QColorSpace::DisplayP3));
    for (auto _ : state)
        transform(image);
    Count(state, Pixels);
}
BENCHMARK(ProfilesOnQImage);

void LCMSOnRows(benchmark::State& state) {
    QImage image = Bench::Picture().copy();
    const auto open = [](const QByteArray& icc) {
        return cmsOpenProfileFromMem(icc.constData(), cmsUInt32Number(icc.size()));
    };
    const cmsHPROFILE from = open(ICC(QColorSpace::SRgb)), to = open(ICC(QColorSpace::DisplayP3));
    const cmsHTRANSFORM transform =
        cmsCreateTransform(from, TYPE_BGRA_8, to, TYPE_BGRA_8, INTENT_PERCEPTUAL, 0);
    for (auto _ : state)
        for (int y = 0; y < image.height(); ++y)
            cmsDoTransform(transform, image.scanLine(y), image.scanLine(y), Bench::Width);
    Count(state, Pixels);
    cmsDeleteTransform(transform);
    cmsCloseProfile(from);
    cmsCloseProfile(to);
}
BENCHMARK(LCMSOnRows);

using Pairs::Measure;
const int Lines[] = {
    Pairs::Add(
        {"profiles on tiles / lcms2 on rows", "ProfilesOnTiles", "LCMSOnRows", Measure::Rate, 0.9}),
    Pairs::Add({"profiles on QImage / lcms2 on rows", "ProfilesOnQImage", "LCMSOnRows",
                Measure::Rate, 0.95}),
};

} // namespace
