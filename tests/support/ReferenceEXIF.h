#pragma once

/// What is known about the kinds of EXIF fields, written down without the library.
namespace Reference {

/// By the numbers of the kinds. A description that is not here is not compared word for word.
constexpr struct {
    unsigned int tag;
    const char* name;
    const char* description = nullptr;
} EXIFKinds[] = {
    {0x0000, "Unkonwn", "An unkonwn EXIF tag."},
    {0x0100, "Image width",
     "The number of columns of image data, equal to the number of pixels per row. In JPEG "
     "compressed data a JPEG marker is used instead of this tag."},
    {0x0101, "Image height"},
    {0x0102, "Bits per sample"},
    {0x0103, "Compression scheme"},
    {0x0106, "Pixel composition"},
    {0x010a, "Fill order"},
    {0x010d, "Document name"},
    {0x010e, "Image title",
     "A character string giving the title of the image. It may be a comment such as \"1988 company "
     "picnic\" or the like. Two-bytes character codes cannot be used. When a 2-bytes code is "
     "necessary, the Exif Private tag <UserComment> is to be used."},
    {0x010f, "Image input equipment manufacturer"},
    {0x0110, "Image input equipment model"},
    {0x0111, "Image data location"},
    {0x0112, "Orientation of image"},
    {0x0115, "Number of components"},
    {0x0116, "Number of rows per strip"},
    {0x0117, "Bytes per compressed strip"},
    {0x011a, "Image resolution in width direction"},
    {0x011b, "Image resolution in height direction"},
    {0x011c, "Image data arrangement"},
    {0x0128, "Unit of X and Y resolution"},
    {0x012d, "Transfer function"},
    {0x0131, "Software used",
     "This tag records the name and version of the software or firmware of the camera or image "
     "input device used to generate the image. The detailed format is not specified, but it is "
     "recommended that the example shown below be followed. When the field is left blank, it is "
     "treated as unknown."},
    {0x0132, "File change date and time"},
    {0x013b, "Person who created the image"},
    {0x013e, "White point chromaticity"},
    {0x013f, "Chromaticities of primaries"},
    {0x0156, "Transfer range"},
    {0x0200, "JPEGProc"},
    {0x0201, "Offset to JPEG SOI"},
    {0x0202, "Bytes of JPEG data"},
    {0x0211, "Color space transformation matrix coefficients"},
    {0x0212, "Subsampling ratio of Y to C"},
    {0x0213, "Y and C positioning"},
    {0x0214, "Pair of black and white reference values"},
    {0x828d, "CFA repeat pattern dimension"},
    {0x828e, "CFA pattern"},
    {0x828f, "Battery level"},
    {0x8298, "Copyright holder"},
    {0x829a, "Exposure time"},
    {0x829d, "F number"},
    {0x83bb, "IPTC-NAA"},
    {0x8773, "ICC profile",
     "Contains an InterColor Consortium (ICC) format color space characterization/profile."},
    {0x8822, "Exposure program"},
    {0x8824, "Spectral sensitivity"},
    {0x8827, "ISO speed ratings"},
    {0x8828, "Optoelectric coefficient"},
    {0x9000, "Exif version"},
    {0x9003, "Date and time original image was generated"},
    {0x9004, "Date and time image was made digital data"},
    {0x9101, "Meaning of each component"},
    {0x9102, "Image compression mode"},
    {0x9201, "Shutter speed",
     "Shutter speed. The unit is the APEX (Additive System of Photographic Exposure) setting."},
    {0x9202, "Aperture", "The lens aperture. The unit is the APEX value."},
    {0x9203, "Brightness",
     "The value of brightness. The unit is the APEX value. Ordinarily it is given in the range of "
     "-99.99 to 99.99."},
    {0x9204, "Exposure bias",
     "The exposure bias. The units is the APEX value. Ordinarily it is given in the range of "
     "-99.99 to 99.99."},
    {0x9205, "Maximum lens aperture"},
    {0x9206, "Subject distance"},
    {0x9207, "Metering mode"},
    {0x9208, "Light source", "The kind of light source."},
    {0x9209, "Flash"},
    {0x920a, "Lens focal length"},
    {0x927c, "Manufacturer notes"},
    {0x9286, "User comments"},
    {0x9290, "DateTime subseconds"},
    {0x9291, "DateTimeOriginal subseconds"},
    {0x9292, "DateTimeDigitized subseconds"},
    {0xa000, "Supported FlashPix version"},
    {0xa001, "Color space information"},
    {0xa002, "Valid image width"},
    {0xa003, "Valid image height"},
    {0xa20b, "Flash energy",
     "Indicates the strobe energy at the time the image is captured, as measured in Beam Candle "
     "Power Seconds (BCPS)."},
    {0xa20c, "Spatial frequency response"},
    {0xa20e, "Focal plane X resolution"},
    {0xa20f, "Focal plane Y resolution",
     "Indicates the number of pixels in the image height (V) direction per "
     "<FocalPlaneResolutionUnit> on the camera focal plane."},
    {0xa210, "Focal plane resolution unit"},
    {0xa214, "Subject location"},
    {0xa215, "Exposure index"},
    {0xa217, "Sensing method"},
    {0xa300, "File source",
     "Indicates the image source. If a DSC recorded the image, this tag value of this tag always "
     "be set to 3, indicating that the image was recorded on a DSC."},
    {0xa301, "Scene type"},
};

} // namespace Reference
