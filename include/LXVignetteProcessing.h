#pragma once

#include "LXAdjustmentProcessing.h"
#include "LXPixel.h"

#include <QtGui/QColor>

#include <vector>

class QDataStream;

/// Pulls the picture towards one colour outside the ellipse that touches its edges.
class LIBIMAGE_EXPORT LXVignetteProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        int size = 1;       ///< pixels beyond the ellipse at which the strength is reached; not 0
        int strength = 100; ///< percent of the colour there; 0 changes nothing
        QColor color = Qt::black;
        int shape = 1; ///< 0 Linear, 1 Parabolic; any other leaves the picture as it is

        /// On the stream: "RMVignette 1.00001", size, strength, shape, color. "RMVignette 1.00000"
        /// has no color and is read as black.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using VignetteData = LXFilterData<Params>;

    LXVignetteProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    /// Without a range if the shape is none.
    LXImageRGBA32i run(VignetteData data);

    /// How far (x, y) lies outside the ellipse around (a, b) with the semi-axes a and b, along the
    /// ray from its centre; negative inside.
    static double Distance(double a, double b, double x, double y);

    /// The distance of (y0, y1) from the ellipse around the origin with the semi-axes e0 and e1,
    /// and the point (x0, x1) of the ellipse that is closest: three numbers.
    static std::vector<double> DistancePointEllipse(double e0, double e1, double y0, double y1);
    /// The same for e0 >= e1 and a point in the first quadrant. On the axes it is an approximation
    /// of its own, see the source.
    static std::vector<double> DistancePointEllipseSpecial(double e0, double e1, double y0,
                                                           double y1);

    /// Where the picture's share falls with the distance.
    class LIBIMAGE_EXPORT Linear {
    public:
        /// `strength` is the picture's share that is left at the distance `size`.
        Linear(double centreX, double centreY, double strength, double size,
               const LXRGBA32i& color);
        void operator()(int x, int y, LXRGBA32i& pixel) const;

    private:
        double m_centreX, m_centreY;
        double m_slope;
        LXRGBA32i m_color;
    };
    /// Where it falls with the square of the distance.
    class LIBIMAGE_EXPORT Parabolic {
    public:
        Parabolic(double centreX, double centreY, double strength, double size,
                  const LXRGBA32i& color);
        void operator()(int x, int y, LXRGBA32i& pixel) const;

    private:
        double m_centreX, m_centreY;
        double m_slope;
        LXRGBA32i m_color;
    };
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXVignetteProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXVignetteProcessing::Params&);
