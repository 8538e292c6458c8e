#pragma once

/// What is known about the kinds of EXIF fields, written down without the library.
namespace Reference {

/// By the numbers of the kinds. A null description is not compared word for word.
constexpr struct {
    unsigned int tag;
    const char* name;
    const char* description;
} EXIFKinds[] = {
    {0x0000, "Unkonwn", "An unkonwn EXIF tag."},
    {0x0100, "Image width",
     "The number of columns of image data, equal to the number of pixels per row. "
     "In JPEG compressed data a JPEG marker is used instead of this tag."},
    {0x0101, "Image height", nullptr},
    {0x0102, "Bits per sample", nullptr},
    {0x0103, "Compression scheme", nullptr},
    {0x0106, "Pixel composition", nullptr},
    {0x010a, "Fill order", nullptr},
    {0x010d, "Document name", nullptr},
    {0x010e, "Image title",
     "A character string giving the title of the image. It may be a comment such "
     "as \"1988 company picnic\" or the like. Two-bytes character codes cannot be "
     "used. When a 2-bytes code is necessary, the Exif Private tag <UserComment> "
     "is to be used."},
    {0x010f, "Image input equipment manufacturer", nullptr},
    {0x0110, "Image input equipment model", nullptr},
    {0x0111, "Image data location", nullptr},
    {0x0112, "Orientation of image", nullptr},
    {0x0115, "Number of components", nullptr},
    {0x0116, "Number of rows per strip", nullptr},
    {0x0117, "Bytes per compressed strip", nullptr},
    {0x011a, "Image resolution in width direction", nullptr},
    {0x011b, "Image resolution in height direction", nullptr},
    {0x011c, "Image data arrangement", nullptr},
    {0x0128, "Unit of X and Y resolution", nullptr},
    {0x012d, "Transfer function", nullptr},
    {0x0131, "Software used",
     "This tag records the name and version of the software or firmware of the "
     "camera or image input device used to generate the image. The detailed format"
     " is not specified, but it is recommended that the example shown below be "
     "followed. When the field is left blank, it is treated as unknown."},
    {0x0132, "File change date and time", nullptr},
    {0x013b, "Person who created the image", nullptr},
    {0x013e, "White point chromaticity", nullptr},
    {0x013f, "Chromaticities of primaries", nullptr},
    {0x0156, "Transfer range", nullptr},
    {0x0200, "JPEGProc", nullptr},
    {0x0201, "Offset to JPEG SOI", nullptr},
    {0x0202, "Bytes of JPEG data", nullptr},
    {0x0211, "Color space transformation matrix coefficients", nullptr},
    {0x0212, "Subsampling ratio of Y to C", nullptr},
    {0x0213, "Y and C positioning", nullptr},
    {0x0214, "Pair of black and white reference values", nullptr},
    {0x828d, "CFA repeat pattern dimension", nullptr},
    {0x828e, "CFA pattern", nullptr},
    {0x828f, "Battery level", nullptr},
    {0x8298, "Copyright holder", nullptr},
    {0x829a, "Exposure time", nullptr},
    {0x829d, "F number", nullptr},
    {0x83bb, "IPTC-NAA", nullptr},
    {0x8773, "ICC profile",
     "Contains an InterColor Consortium (ICC) format color space "
     "characterization/profile."},
    {0x8822, "Exposure program", nullptr},
    {0x8824, "Spectral sensitivity", nullptr},
    {0x8827, "ISO speed ratings", nullptr},
    {0x8828, "Optoelectric coefficient", nullptr},
    {0x9000, "Exif version", nullptr},
    {0x9003, "Date and time original image was generated", nullptr},
    {0x9004, "Date and time image was made digital data", nullptr},
    {0x9101, "Meaning of each component", nullptr},
    {0x9102, "Image compression mode", nullptr},
    {0x9201, "Shutter speed",
     "Shutter speed. The unit is the APEX (Additive System of Photographic "
     "Exposure) setting."},
    {0x9202, "Aperture", "The lens aperture. The unit is the APEX value."},
    {0x9203, "Brightness",
     "The value of brightness. The unit is the APEX value. Ordinarily it is given "
     "in the range of -99.99 to 99.99."},
    {0x9204, "Exposure bias",
     "The exposure bias. The units is the APEX value. Ordinarily it is given in "
     "the range of -99.99 to 99.99."},
    {0x9205, "Maximum lens aperture", nullptr},
    {0x9206, "Subject distance", nullptr},
    {0x9207, "Metering mode", nullptr},
    {0x9208, "Light source", "The kind of light source."},
    {0x9209, "Flash", nullptr},
    {0x920a, "Lens focal length", nullptr},
    {0x927c, "Manufacturer notes", nullptr},
    {0x9286, "User comments", nullptr},
    {0x9290, "DateTime subseconds", nullptr},
    {0x9291, "DateTimeOriginal subseconds", nullptr},
    {0x9292, "DateTimeDigitized subseconds", nullptr},
    {0xa000, "Supported FlashPix version", nullptr},
    {0xa001, "Color space information", nullptr},
    {0xa002, "Valid image width", nullptr},
    {0xa003, "Valid image height", nullptr},
    {0xa20b, "Flash energy",
     "Indicates the strobe energy at the time the image is captured, as measured "
     "in Beam Candle Power Seconds (BCPS)."},
    {0xa20c, "Spatial frequency response", nullptr},
    {0xa20e, "Focal plane X resolution", nullptr},
    {0xa20f, "Focal plane Y resolution",
     "Indicates the number of pixels in the image height (V) direction per "
     "<FocalPlaneResolutionUnit> on the camera focal plane."},
    {0xa210, "Focal plane resolution unit", nullptr},
    {0xa214, "Subject location", nullptr},
    {0xa215, "Exposure index", nullptr},
    {0xa217, "Sensing method", nullptr},
    {0xa300, "File source",
     "Indicates the image source. If a DSC recorded the image, this tag value of "
     "this tag always be set to 3, indicating that the image was recorded on a "
     "DSC."},
    {0xa301, "Scene type", nullptr},
};

} // namespace Reference
