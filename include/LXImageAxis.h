#pragma once

#include <QtCore/QRect>

#include <vector>

/// The two ways to cut an image into lines, for what is the same along both. `cross` counts the
/// lines and `along` the pixels on them; a transfer starts at `along` and has the size of `line`.

/// Lines are rows of the image.
struct LXAlongRows {
    template <class Image, class Pixel>
    static bool Read(const Image& image, int cross, int along, std::vector<Pixel>& line) {
        return image.ReadLine(unsigned(cross), unsigned(along),
                              reinterpret_cast<unsigned char*>(line.data()),
                              unsigned(line.size() * sizeof(Pixel)));
    }
    template <class Image, class Pixel>
    static bool Write(Image& image, int cross, int along, const std::vector<Pixel>& line) {
        return image.WriteLine(unsigned(cross), unsigned(along),
                               reinterpret_cast<const unsigned char*>(line.data()),
                               unsigned(line.size() * sizeof(Pixel)));
    }
    template <class Image>
    static int Extent(const Image& image) {
        return int(image.GetWidth());
    }
    static int AlongFirst(const QRect& rect) { return rect.left(); }
    static int AlongLast(const QRect& rect) { return rect.right(); }
    static int CrossFirst(const QRect& rect) { return rect.top(); }
    static int CrossLast(const QRect& rect) { return rect.bottom(); }
};

/// Lines are columns of the image.
struct LXAlongColumns {
    template <class Image, class Pixel>
    static bool Read(const Image& image, int cross, int along, std::vector<Pixel>& line) {
        return image.ReadColumn(unsigned(cross), unsigned(along),
                                reinterpret_cast<unsigned char*>(line.data()),
                                unsigned(line.size() * sizeof(Pixel)));
    }
    template <class Image, class Pixel>
    static bool Write(Image& image, int cross, int along, const std::vector<Pixel>& line) {
        return image.WriteColumn(unsigned(cross), unsigned(along),
                                 reinterpret_cast<const unsigned char*>(line.data()),
                                 unsigned(line.size() * sizeof(Pixel)));
    }
    template <class Image>
    static int Extent(const Image& image) {
        return int(image.GetHeight());
    }
    static int AlongFirst(const QRect& rect) { return rect.top(); }
    static int AlongLast(const QRect& rect) { return rect.bottom(); }
    static int CrossFirst(const QRect& rect) { return rect.left(); }
    static int CrossLast(const QRect& rect) { return rect.right(); }
};
