#include "LXAddNoiseProcessing.h"
#include "LXBlurProcessing.h"
#include "LXDiffuseGlowProcessing.h"
#include "LXFault.h"
#include "LXHighPassProcessing.h"
#include "LXShadowProcessing.h"
#include "LXSharpenProcessing.h"
#include "LXSmoothenProcessing.h"
#include "LXVignetteProcessing.h"
#include "RMRefineSelectionProcessing.h"
#include "filters/ParameterStream.h"

/// The front door of the filters' parameters on streams. What a filter has there is told in one
/// description of it; the functions for it are written by the macro below.

namespace {

using LXParameterStream::Describe;

using Vignette = LXVignetteProcessing::Params;
constexpr auto VignetteBlock =
    Describe("RMVignette 1.00001", "Write vignette data error.", "Read vignette data error.",
             &Vignette::size, &Vignette::strength, &Vignette::shape, &Vignette::color);
/// The form that came before the colour. It is read as black, and never written.
constexpr auto BlackVignetteBlock =
    Describe("RMVignette 1.00000", "", "", &Vignette::size, &Vignette::strength, &Vignette::shape);

using Smoothen = LXSmoothenProcessing::Params;
constexpr auto SmoothenBlock = Describe("RMSmoothen 1.00000", "Write smoothen data error.",
                                        "Read smoothen data error.", &Smoothen::amount);

using Sharpen = LXSharpenProcessing::Params;
constexpr auto SharpenBlock = Describe("RMSharpen 1.00000", "Write sharpen data error.",
                                       "Read sharpen data error.", &Sharpen::amount);

using HighPass = LXHighPassProcessing::Params;
constexpr auto HighPassBlock =
    Describe("RMHighPass 1.00000", "Write high pass data error.", "Read high pass data error.",
             &HighPass::radius, &HighPass::modeIndex, &HighPass::opacity);

using GaussianBlur = LXGaussianBlurProcessing::Params;
constexpr auto GaussianBlurBlock =
    Describe("RMGaussianBlur 1.00000", "Write gaussian blur data error.",
             "Read gaussian blur data error.", &GaussianBlur::radius);

using DiffuseGlow = LXDiffuseGlowProcessing::Params;
constexpr auto DiffuseGlowBlock =
    Describe("RMDiffuseGlow 1.00000", "Write diffuse glow data error.",
             "Read diffuse glow data error.", &DiffuseGlow::opacity, &DiffuseGlow::radius,
             &DiffuseGlow::threshold, &DiffuseGlow::color, &DiffuseGlow::mode);

using BoxBlur = LXBoxBlurProcessing::Params;
constexpr auto BoxBlurBlock = Describe("RMBoxBlur 1.00000", "Write box blur data error.",
                                       "Read box blur data error.", &BoxBlur::radius);

using AddNoise = LXAddNoiseProcessing::Params;
constexpr auto AddNoiseBlock =
    Describe("RMAddNoise 1.00000", "Write add noise data error.", "Read add noise data error.",
             &AddNoise::amount, &AddNoise::distribution, &AddNoise::keepAlpha);

/// Both shadows have the same fields.
constexpr auto DescribeShadow(const char* header, const char* writeError, const char* readError) {
    using Shadow = LXShadowParams;
    return Describe(header, writeError, readError, &Shadow::value0, &Shadow::color, &Shadow::value1,
                    &Shadow::value2, &Shadow::value3, &Shadow::blurRadius, &Shadow::value4);
}
constexpr auto DropShadowBlock = DescribeShadow(
    "RMDropShadow 1.00000", "Write drop shadow data error.", "Read drop shadow data error.");
constexpr auto InnerShadowBlock = DescribeShadow(
    "RMInnerShadow 1.00000", "Write inner shadow data error.", "Read inner shadow data error.");

using RefineSelection = RMRefineSelectionProcessing::Params;
constexpr auto RefineSelectionBlock = Describe(
    "RMRefineSelection 1.00000", "Write refine selection data error.",
    "Read refine selection data error.", &RefineSelection::smoothRadius, &RefineSelection::shift);

} // namespace

bool LXVignetteProcessing::Params::Read(QDataStream& stream) {
    const std::string header = LXParameterStream::ReadHeader(stream, VignetteBlock.header);
    if (header == VignetteBlock.header)
        return LXParameterStream::ReadFields(stream, *this, VignetteBlock.fields);
    if (header != BlackVignetteBlock.header)
        return false;
    const bool complete = LXParameterStream::ReadFields(stream, *this, BlackVignetteBlock.fields);
    color = Qt::black;
    return complete;
}

#define LX_READ(Processing, block)                                                                 \
    bool Processing::Params::Read(QDataStream& stream) {                                           \
        return LXParameterStream::Read(stream, *this, block);                                      \
    }

#define LX_WRITE_AND_OPERATORS(Processing, block)                                                  \
    bool Processing::Params::Write(QDataStream& stream) const {                                    \
        return LXParameterStream::Write(stream, *this, block);                                     \
    }                                                                                              \
    QDataStream& operator<<(QDataStream& stream, const Processing::Params& params) {               \
        if (!params.Write(stream))                                                                 \
            LXFault::Trace(LX_SITE, QString::fromLatin1((block).writeError));                      \
        return stream;                                                                             \
    }                                                                                              \
    QDataStream& operator>>(QDataStream& stream, Processing::Params& params) {                     \
        if (!params.Read(stream))                                                                  \
            LXFault::Trace(LX_SITE, QString::fromLatin1((block).readError));                       \
        return stream;                                                                             \
    }

#define LX_PARAMETERS(Processing, block)                                                           \
    LX_READ(Processing, block)                                                                     \
    LX_WRITE_AND_OPERATORS(Processing, block)

LX_WRITE_AND_OPERATORS(LXVignetteProcessing, VignetteBlock)
LX_PARAMETERS(LXSmoothenProcessing, SmoothenBlock)
LX_PARAMETERS(LXSharpenProcessing, SharpenBlock)
LX_PARAMETERS(LXHighPassProcessing, HighPassBlock)
LX_PARAMETERS(LXGaussianBlurProcessing, GaussianBlurBlock)
LX_PARAMETERS(LXDiffuseGlowProcessing, DiffuseGlowBlock)
LX_PARAMETERS(LXBoxBlurProcessing, BoxBlurBlock)
LX_PARAMETERS(LXAddNoiseProcessing, AddNoiseBlock)
LX_PARAMETERS(LXDropShadowProcessing, DropShadowBlock)
LX_PARAMETERS(LXInnerShadowProcessing, InnerShadowBlock)
LX_PARAMETERS(RMRefineSelectionProcessing, RefineSelectionBlock)

#undef LX_PARAMETERS
#undef LX_WRITE_AND_OPERATORS
#undef LX_READ
