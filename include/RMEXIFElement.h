#pragma once

#include "LXExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

/// One EXIF field of an image: its kind and its value.
class LIBIMAGE_EXPORT RMEXIFElement {
public:
    /// The kind of a field, 0 to 79 by ascending EXIF tag number; 0 is an unknown tag.
    enum Type : qint32 {
        Unknown,
        ImageWidth,
        ImageLength,
        BitsPerSample,
        Compression,
        PhotometricInterpretation,
        FillOrder,
        DocumentName,
        ImageDescription,
        Make,
        Model,
        StripOffsets,
        Orientation,
        SamplesPerPixel,
        RowsPerStrip,
        StripByteCounts,
        XResolution,
        YResolution,
        PlanarConfiguration,
        ResolutionUnit,
        TransferFunction,
        Software,
        DateTime,
        Artist,
        WhitePoint,
        PrimaryChromaticities,
        TransferRange,
        JPEGProc,
        JPEGInterchangeFormat,
        JPEGInterchangeFormatLength,
        YCbCrCoefficients,
        YCbCrSubSampling,
        YCbCrPositioning,
        ReferenceBlackWhite,
        CFARepeatPatternDim,
        CFAPattern,
        BatteryLevel,
        Copyright,
        ExposureTime,
        FNumber,
        IPTCNAA,
        InterColorProfile,
        ExposureProgram,
        SpectralSensitivity,
        ISOSpeedRatings,
        OECF,
        ExifVersion,
        DateTimeOriginal,
        DateTimeDigitized,
        ComponentsConfiguration,
        CompressedBitsPerPixel,
        ShutterSpeedValue,
        ApertureValue,
        BrightnessValue,
        ExposureBiasValue,
        MaxApertureValue,
        SubjectDistance,
        MeteringMode,
        LightSource,
        Flash,
        FocalLength,
        MakerNote,
        UserComment,
        SubSecTime,
        SubSecTimeOriginal,
        SubSecTimeDigitized,
        FlashpixVersion,
        ColorSpace,
        PixelXDimension,
        PixelYDimension,
        FlashEnergy,
        SpatialFrequencyResponse,
        FocalPlaneXResolution,
        FocalPlaneYResolution,
        FocalPlaneResolutionUnit,
        SubjectLocation,
        ExposureIndex,
        SensingMethod,
        FileSource,
        SceneType
    };

    /// The EXIF tag number of a kind; 0 for a number beyond the kinds.
    static unsigned int GetTag(Type type);
    /// Name and description of a kind as the application's translators have them, in English as the
    /// EXIF standard has them otherwise; empty for a number beyond the kinds.
    static QString GetTypeName(Type type);
    static QString GetDescription(Type type);

    RMEXIFElement(Type type, const QVariant& value);
    RMEXIFElement(const RMEXIFElement& other);
    RMEXIFElement& operator=(const RMEXIFElement& other);
    ~RMEXIFElement();

    Type GetType() const;
    QVariant GetValue() const;
    void SetValue(const QVariant& value);
    /// The value as QVariant::toByteArray gives it.
    QByteArray ToRawDataValue() const;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> m_p;
};
