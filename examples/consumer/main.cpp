#include <LXConvertImage.h>
#include <RMTileManager64.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: consumer IN OUT\n");
        return 2;
    }
    const QImage photo = QImage(argv[1]).convertToFormat(QImage::Format_ARGB32);
    if (photo.isNull()) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 1;
    }
    RMTileManager64::InitInstance();
    bool saved = false;
    {
        auto image = ConvertImage<QImage, LXImageRGBA32i>(photo);
        const LXImageRGBA32i before(image); // shares all tiles
        for (unsigned int x = 0; x < image.GetWidth(); ++x)
            image.SetColor(int(x), 0, {0, 0, 255, 255}); // copies one row of tiles
        std::printf("%u x %u pixels, %u x %u tiles\n", before.GetWidth(), before.GetHeight(),
                    before.GetTilesX(), before.GetTilesY());
        saved = ConvertImage<LXImageRGBA32i, QImage>(image).save(argv[2]);
    }
    RMTileManager64::ReleaseInstance();
    return saved ? 0 : 1;
}
