#include "Adjustments.h"

#include "LXChannelTransforms.h"
#include "LXColorAdjustments.h"
#include "LXCurvesTransformation.h"
#include "LXGrayAdjustments.h"
#include "LXHueAdjustments.h"
#include "LXLevelsTransformation.h"
#include "LXTemperatureCorrection.h"
#include "LXToneAdjustments.h"
#include "RMDodgeBurnCorrection.h"
#include "Walk.h"

namespace {

using Image = LXImageRGBA32i;
using Values = ParameterValues;
using Kind = ParameterKind;

/// One after the other from the values of master, red, green and blue.
struct FourChannels {
    static constexpr const char* Prefixes[4] = {"", "red-", "green-", "blue-"};
    static QByteArray Name(int channel, const char* name) {
        return QByteArray(Prefixes[channel]) + name;
    }
};

void ApplyBlackAndWhite(Image& image, const Values& v) {
    Walk(image, LXBlackAndWhiteTransformation(v.Flag("lightness"), float(v.Number("red")),
                                              float(v.Number("green")), float(v.Number("blue"))));
}

void ApplyBrightnessContrast(Image& image, const Values& v) {
    Walk(image, LXBrightnessContrastTransformation(v.Integer("brightness"), v.Integer("contrast")));
}

void ApplyBurn(Image& image, const Values& v) {
    Walk(image, RMBurnCorrection(v.Number("amount"),
                                 static_cast<RMBurnCorrection::RangeType>(v.Choice("range"))));
}

void ApplyDodge(Image& image, const Values& v) {
    Walk(image, RMDodgeCorrection(v.Number("amount"),
                                  static_cast<RMDodgeCorrection::RangeType>(v.Choice("range"))));
}

void ApplyChannel(Image& image, const Values& v) {
    const int choice = v.Choice("filter");
    if (choice == LXRGBChannelFilter::BlueAsGray + 1)
        return LXTCGrayscaleFromRGBA32iAlpha()(image);
    LXRGBChannelFilter(static_cast<LXRGBChannelFilter::RGBFilter>(choice))(image);
}

void ApplyColorBalance(Image& image, const Values& v) {
    const auto red = v.Integers("red"), green = v.Integers("green"), blue = v.Integers("blue");
    Walk(image, LXColorBalanceTransformation(red.data(), green.data(), blue.data()));
}

void ApplyColorEnhancer(Image& image, const Values& v) {
    const auto input = v.Integers("input");
    int inputs[4][2] = {{input[0], input[1]}, {0, 255}, {0, 255}, {0, 255}};
    int outputs[4][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    double gammas[4] = {v.Number("gamma"), 1, 1, 1};
    LXColorEnhancerTransformation enhancer;
    enhancer.SetLevels(LXLevelsTransformation(inputs, outputs, gammas, 100));
    enhancer.SetAmountData(v.Integer("amount"));
    Walk(image, enhancer);
}

void ApplyColorize(Image& image, const Values& v) {
    Walk(image, LXColorizeTransformation(v.Colour("color"), v.Integer("amount")));
}

void ApplyCurves(Image& image, const Values& v) {
    QVector<QPoint> curves[4] = {v.Points("curve"), v.Points("red-curve"), v.Points("green-curve"),
                                 v.Points("blue-curve")};
    Walk(image, LXCurvesTransformation(curves, v.Integer("amount")));
}

void ApplyExposure(Image& image, const Values& v) {
    Walk(image, LXExposureTransformation(v.Number("exposure"), v.Number("offset")));
}

void ApplyGamma(Image& image, const Values& v) {
    Walk(image, LXGammaCorrectionTransformation(v.Number("gamma")));
}

void ApplyHueSaturation(Image& image, const Values& v) {
    Walk(image, LXHueSaturationTransformation(v.Integer("hue"), v.Integer("saturation"),
                                              v.Integer("lightness"), v.Flag("colorize")));
}

void ApplyLevels(Image& image, const Values& v) {
    int inputs[4][2], outputs[4][2];
    double gammas[4];
    for (int channel = 0; channel < 4; ++channel) {
        const auto input = v.Integers(FourChannels::Name(channel, "input").constData());
        const auto output = v.Integers(FourChannels::Name(channel, "output").constData());
        std::copy_n(input.begin(), 2, inputs[channel]);
        std::copy_n(output.begin(), 2, outputs[channel]);
        gammas[channel] = v.Number(FourChannels::Name(channel, "gamma").constData());
    }
    Walk(image, LXLevelsTransformation(inputs, outputs, gammas, v.Integer("amount")));
}

void ApplyPhotoFilter(Image& image, const Values& v) {
    Walk(image, LXPhotoFilterTransformation(v.Colour("color"), v.Integer("density")));
}

void ApplyPosterize(Image& image, const Values& v) {
    Walk(image, LXPosterizeTransformation(v.Integer("levels")));
}

void ApplyReplaceColor(Image& image, const Values& v) {
    Walk(image,
         LXReplaceColorTransformation(v.Colour("from"), v.Colour("to"), v.Integer("tolerance")));
}

void ApplyTemperature(Image& image, const Values& v) {
    Walk(image, LXTemperatureCorrection(v.Integer("kelvin"), v.Integer("strength"), 0));
}

void ApplyTint(Image& image, const Values& v) {
    Walk(image, LXTintRGB32(v.Colour("shadows"), v.Colour("highlights"), v.Integer("amount")));
}

constexpr Parameter Percent(const char* name, const char* text, const char* fallback) {
    return {name, Kind::Integer, text, fallback, 0, 100};
}

constexpr Parameter Levels(const char* name, const char* text) {
    return {name, Kind::Range, text, "0,255", 0, 255};
}

constexpr Parameter Gamma(const char* name, const char* text) {
    return {name, Kind::Number, text, "1", 0.01, 9.99};
}

constexpr Parameter Curve(const char* name, const char* text) {
    return {name, Kind::Points, text, "0,0/255,255", 0, 255};
}

constexpr Parameter Tones(const char* name, const char* text) {
    return {name, Kind::Triple, text, "0,0,0", -100, 100};
}

constexpr Parameter ToneRange = {"range",
                                 Kind::Choice,
                                 "the tones that change most",
                                 "midtones",
                                 0,
                                 0,
                                 "shadows|midtones|highlights"};
constexpr Parameter Amount = {"amount", Kind::Number, "the strength", "0.5", 0, 1};

} // namespace

const std::vector<Adjustment>& Adjustments() {
    static const std::vector<Adjustment> adjustments = {
        {"black-and-white",
         "gray by the weights of the channels",
         {{"red", Kind::Number, "the weight of red", "0.3", -2, 3},
          {"green", Kind::Number, "the weight of green", "0.59", -2, 3},
          {"blue", Kind::Number, "the weight of blue", "0.11", -2, 3},
          {"lightness", Kind::Flag, "weigh the lightness of the channels", ""}},
         ApplyBlackAndWhite},
        {"brightness-contrast",
         "lighter or darker, steeper or flatter",
         {{"brightness", Kind::Integer, "darker or lighter", "0", -127, 127},
          {"contrast", Kind::Integer, "flatter or steeper", "0", -127, 127}},
         ApplyBrightnessContrast},
        {"burn", "darken a range of tones", {Amount, ToneRange}, ApplyBurn},
        {"channel",
         "hide a channel or show one as gray",
         {{"filter", Kind::Choice, "what to do", "none", 0, 0,
           "none|hide-blue|hide-green|hide-red|show-red|show-green|show-blue|show-alpha"}},
         ApplyChannel},
        {"color-balance",
         "move shadows, midtones and highlights of each channel",
         {Tones("red", "for shadows, midtones, highlights of red"),
          Tones("green", "the same of green"), Tones("blue", "the same of blue")},
         ApplyColorBalance},
        {"color-enhancer",
         "levels, mixed in by an amount",
         {Levels("input", "the levels that become black and white"), Gamma("gamma", "of midtones"),
          Percent("amount", "how much of it", "100")},
         ApplyColorEnhancer},
        {"colorize",
         "the shades of one colour",
         {{"color", Kind::Colour, "that colour", "#8a6a3a"},
          Percent("amount", "how much of it", "100")},
         ApplyColorize},
        {"curves",
         "each channel through a curve, then all through one",
         {Curve("curve", "of all channels"), Curve("red-curve", "of red"),
          Curve("green-curve", "of green"), Curve("blue-curve", "of blue"),
          Percent("amount", "how much of it", "100")},
         ApplyCurves},
        {"desaturate",
         "gray by lightness",
         {},
         [](Image& image, const Values&) { Walk(image, LXDesaturateTransformation()); }},
        {"dodge", "lighten a range of tones", {Amount, ToneRange}, ApplyDodge},
        {"exposure",
         "more or less light",
         {{"exposure", Kind::Number, "less or more", "0", -20, 20},
          {"offset", Kind::Number, "darker or lighter", "0", -1, 1}},
         ApplyExposure},
        {"gamma",
         "lighter or darker midtones",
         {{"gamma", Kind::Number, "above 1 is lighter", "1", 0.01, 5}},
         ApplyGamma},
        {"grayscale",
         "gray by luminance",
         {},
         [](Image& image, const Values&) { LXToGrayScaleImage()(image); }},
        {"hue-saturation",
         "turn hues, change saturation and lightness",
         {{"hue", Kind::Integer, "degrees", "0", -360, 360},
          {"saturation", Kind::Integer, "grayer or more colourful", "0", -100, 100},
          {"lightness", Kind::Integer, "darker or lighter", "0", -100, 100},
          {"colorize", Kind::Flag, "one hue for all", ""}},
         ApplyHueSaturation},
        {"invert",
         "the negative",
         {},
         [](Image& image, const Values&) { Walk(image, LXInvertTransformation()); }},
        {"invert-alpha",
         "opaque becomes transparent",
         {},
         [](Image& image, const Values&) { Walk(image, LXInvertAlphaTransformation()); }},
        {"levels",
         "input range, gamma, output range",
         {Levels("input", "of all channels"), Gamma("gamma", "of all channels"),
          Levels("output", "of all channels"), Levels("red-input", "of red"),
          Gamma("red-gamma", "of red"), Levels("red-output", "of red"),
          Levels("green-input", "of green"), Gamma("green-gamma", "of green"),
          Levels("green-output", "of green"), Levels("blue-input", "of blue"),
          Gamma("blue-gamma", "of blue"), Levels("blue-output", "of blue"),
          Percent("amount", "how much of it", "100")},
         ApplyLevels},
        {"photo-filter",
         "a coloured glass before the lens",
         {{"color", Kind::Colour, "of the glass", "#ec8a00"},
          Percent("density", "of the glass", "25")},
         ApplyPhotoFilter},
        {"posterize",
         "few levels",
         {{"levels", Kind::Integer, "how many of each channel", "4", 2, 255}},
         ApplyPosterize},
        {"replace-color",
         "move one colour and its neighbours to another",
         {{"from", Kind::Colour, "that colour", "#ff0000"},
          {"to", Kind::Colour, "the other", "#0000ff"},
          {"tolerance", Kind::Integer, "how far the neighbours reach", "60", 0, 255}},
         ApplyReplaceColor},
        {"temperature",
         "the light of a colour temperature",
         {{"kelvin", Kind::Integer, "of the light", "6500", 1000, 40000},
          {"strength", Kind::Integer, "of the light", "100", 0, 200}},
         ApplyTemperature},
        {"tint",
         "pull black and white towards two colours",
         {{"shadows", Kind::Colour, "that of black", "#000040"},
          {"highlights", Kind::Colour, "that of white", "#fff0d0"},
          Percent("amount", "how far", "50")},
         ApplyTint},
    };
    return adjustments;
}
