#include "color/whitebalance/Statistics.h"

#include "LXTransformImageColors.h"
#include "color/whitebalance/OrderedSum.h"

#include <algorithm>

using namespace LXWhiteBalance;

std::int64_t Census::Count() const {
    std::int64_t count = 0;
    for (const Section& section : sections)
        count += section.pixels;
    return count;
}

Histogram Census::Total(LXRows::LevelCounts LXRows::Levels::*counts) const {
    Histogram total{};
    for (const Section& section : sections)
        for (std::size_t level = 0; level < total.size(); ++level)
            total[level] += (section.levels.*counts)[level];
    return total;
}

namespace {

/// Sections are a few hundred at most, and large enough for their histograms to be the smaller
/// part.
unsigned int SectionPixels(const QRect& rect) {
    constexpr std::int64_t MostSections = 512, FewestPixels = 16384;
    const std::int64_t pixels = std::int64_t(rect.width()) * rect.height();
    return static_cast<unsigned int>(std::max(pixels / MostSections + 1, FewestPixels));
}

/// A section ends with the run that fills it.
class CensusVisitor {
public:
    CensusVisitor(Census& census, unsigned int sectionPixels)
        : m_census(census), m_sectionPixels(sectionPixels) {}

    void VisitRun(const LXRGBA32i* pixels, unsigned int count) const {
        auto& sections = m_census.sections;
        if (sections.empty() || sections.back().pixels >= m_sectionPixels)
            sections.emplace_back();
        sections.back().pixels += count;
        LXRows::CountAndAdd(pixels, count, sections.back().levels, m_census.sums);
    }

private:
    Census& m_census;
    const unsigned int m_sectionPixels;
};

/// The squared deviations of each channel, and their sums so far.
class Squares {
public:
    explicit Squares(const PerChannel& means)
        : m_red(TermsOf(means.red)), m_green(TermsOf(means.green)), m_blue(TermsOf(means.blue)) {}

    const PerChannel& Sums() const { return m_sums; }

    /// A whole section at once; false if it must go pixel by pixel.
    bool Add(const LXRows::Levels& levels) {
        PerChannel sums = m_sums;
        const bool done = LXOrderedSum::AddCounted(sums.red, m_red, levels.red) &&
                          LXOrderedSum::AddCounted(sums.green, m_green, levels.green) &&
                          LXOrderedSum::AddCounted(sums.blue, m_blue, levels.blue);
        if (done)
            m_sums = sums;
        return done;
    }

    void Add(const LXRGBA32i* pixels, unsigned int count) {
        PerChannel sums = m_sums;
        for (unsigned int i = 0; i < count; ++i) {
            sums.red += m_red[pixels[i].red];
            sums.green += m_green[pixels[i].green];
            sums.blue += m_blue[pixels[i].blue];
        }
        m_sums = sums;
    }

private:
    static LXOrderedSum::Terms TermsOf(double mean) {
        LXOrderedSum::Terms terms;
        for (std::size_t level = 0; level < terms.size(); ++level)
            terms[level] = (double(level) - mean) * (double(level) - mean);
        return terms;
    }

    const LXOrderedSum::Terms m_red, m_green, m_blue;
    PerChannel m_sums;
};

/// Meets the same runs as the census did, and reads the pixels of those sections only that need it.
class SquaresVisitor {
public:
    SquaresVisitor(Squares& squares, const std::vector<Section>& sections)
        : m_squares(squares), m_next(sections.begin()) {}

    void VisitRun(const LXRGBA32i* pixels, unsigned int count) const {
        if (m_left == 0) {
            m_left = m_next->pixels;
            m_done = m_squares.Add(m_next->levels);
            ++m_next;
        }
        m_left -= count;
        if (!m_done)
            m_squares.Add(pixels, count);
    }

private:
    Squares& m_squares;
    mutable std::vector<Section>::const_iterator m_next;
    mutable unsigned int m_left = 0;
    mutable bool m_done = false;
};

} // namespace

template <class Image>
Census LXWhiteBalance::TakeCensus(const Image& image) {
    const QRect rect = LXWalkDetail::RectOf(image);
    const unsigned int sectionPixels = SectionPixels(rect);
    Census census;
    // At once, so that no lack of memory ends in the guard of a visit.
    census.sections.reserve(
        std::size_t(std::int64_t(rect.width()) * rect.height() / sectionPixels + 1));
    LXVisitImageColors<Image, CensusVisitor>()(image, rect, CensusVisitor(census, sectionPixels));
    return census;
}

template <class Image>
PerChannel LXWhiteBalance::SumSquares(const Image& image, const Census& census,
                                      const PerChannel& means) {
    Squares squares(means);
    LXVisitImageColors<Image, SquaresVisitor>()(image, LXWalkDetail::RectOf(image),
                                                SquaresVisitor(squares, census.sections));
    return squares.Sums();
}

namespace LXWhiteBalance {
template Census TakeCensus(const LXImageRGBA32i&);
template Census TakeCensus(const QImage&);
template PerChannel SumSquares(const LXImageRGBA32i&, const Census&, const PerChannel&);
template PerChannel SumSquares(const QImage&, const Census&, const PerChannel&);
} // namespace LXWhiteBalance
