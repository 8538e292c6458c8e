#include "geometry/TilePainter.h"

#include "LXTileAccess.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>

using Image = LXImageRGBA32i;

void LXDrawOnTile(Image::Slot& slot, const QPointF& corner, const LXDrawing& drawing) {
    const LXTileWriter tile(slot);
    if (!tile.Pixels())
        return;
    void* const pixels = tile.Pixels();
    QImage surface(static_cast<uchar*>(pixels), int(Image::TileWidth), int(Image::TileHeight),
                   int(Image::TileWidth * sizeof(Image::Pixel)), QImage::Format_ARGB32);
    QPainter painter(&surface);
    painter.translate(-corner);
    drawing(painter);
}

void LXDrawOnTiles(Image& image, const LXDrawing& drawing) {
    if (image.GetTilesX() == 0 || image.GetTilesY() == 0)
        return;
    const LXTileMarks touched = LXReachOf(drawing, image.GetTilesX(), image.GetTilesY());
    for (unsigned int row = 0; row < image.GetTilesY(); ++row)
        for (unsigned int column = 0; column < image.GetTilesX(); ++column)
            if (touched.IsMarked(column, row))
                LXDrawOnTile(image.GetTileRow(row)[column],
                             QPointF(column * Image::TileWidth, row * Image::TileHeight), drawing);
}
