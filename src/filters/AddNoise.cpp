#include "LXAddNoiseProcessing.h"

#include "LXWrappingArithmetic.h"
#include "core/Truncate.h"
#include "filters/PassStages.h"

#include <QtCore/QReadLocker>

#include <algorithm>
#include <ctime>

void LXAddNoiseProcessing::LXUniformNoise::operator()(LXRGBA32i& pixel) {
    pixel.red = static_cast<std::uint8_t>(m_red(m_generator));
    pixel.green = static_cast<std::uint8_t>(m_green(m_generator));
    pixel.blue = static_cast<std::uint8_t>(m_blue(m_generator));
    pixel.alpha = static_cast<std::uint8_t>(m_alpha(m_generator));
}

void LXAddNoiseProcessing::LXGaussianNoise::operator()(LXRGBA32i& pixel) {
    const auto draw = [this](std::normal_distribution<double>& distribution) {
        return static_cast<std::uint8_t>(
            std::clamp(TruncateToInt(distribution(m_generator)), 0, 255));
    };
    pixel.red = draw(m_red);
    pixel.green = draw(m_green);
    pixel.blue = draw(m_blue);
    pixel.alpha = draw(m_alpha);
}

namespace {

bool SameSize(const LXImageRGBA32i& a, const LXImageRGBA32i& b) {
    return a.GetWidth() == b.GetWidth() && a.GetHeight() == b.GetHeight();
}

} // namespace

LXImageRGBA32i LXAddNoiseProcessing::run(AddNoiseData data) {
    const bool selected = data.selectionRect.isValid();
    const QRect place = LXMoved(data.selectionRect, data.selectionOffset);
    const bool uniform = data.params.distribution == 0;
    LXImageRGBA32i& cached = uniform ? *m_cachedUniformNoise : *m_cachedGaussianNoise;
    LXImageRGBA32i noise =
        selected ? LXImageRGBA32i(unsigned(place.width()), unsigned(place.height())) : data.image;

    LXFilterRun run(*this, CancelLock(), CancelFlag());
    bool found = false;
    {
        const QReadLocker locker(m_cacheLock);
        found = SameSize(cached, noise);
        if (found)
            noise = cached;
    }
    if (!found) {
        const auto seed = static_cast<std::uint32_t>(std::time(nullptr));
        if (uniform)
            LXStages::Colors(run, LXUniformNoise(seed), noise, LXImageRect(noise));
        else
            LXStages::Colors(run, LXGaussianNoise(seed), noise, LXImageRect(noise));
        run.AddAction([&] {
            // Written under the lock for reading: that is the contract with the cache's owner, who
            // does not share it between runs that go on at once.
            const QReadLocker locker(m_cacheLock);
            cached = noise;
        });
    }
    const int opacity = LXWrappingMultiply(data.params.amount, 256) / 100;
    const auto blend = [&](const auto& mode, const auto& modeBySelection) {
        if (selected)
            LXStages::BlendBySelection(run, modeBySelection, noise, data.image, data.selection,
                                       LXImageRect(noise), place, data.selectionRect);
        else
            LXStages::Blend(run, mode, noise, data.image, QRect(), QRect());
    };
    if (data.params.keepAlpha)
        blend(LXBlend::LXSourceOver<true>(opacity),
              LXBlend::LXSourceOverBySelection<true>(opacity));
    else
        blend(LXBlend::LXSourceOver<false>(opacity),
              LXBlend::LXSourceOverBySelection<false>(opacity));
    run.Run();
    return data.image;
}
