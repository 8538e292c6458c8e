#pragma once

#include "LXAdjustmentProcessing.h"
#include "LXPixel.h"

#include <QtGui/QColor>

class QDataStream;

/// Makes the bright parts of the picture glow in one colour: a mask of them, blurred, hardened and
/// blurred again, is laid over or under the picture.
class LIBIMAGE_EXPORT LXDiffuseGlowProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        int opacity = 100;   ///< percent
        int radius = 5;      ///< the sigma of the blurs, in pixels, see LXGaussian1D.h
        int threshold = 128; ///< what is as bright as this glows
        QColor color = Qt::white;
        int mode = 0; ///< 0 lays the glow over the picture, any other under it

        /// On the stream: "RMDiffuseGlow 1.00000", and the fields in this order.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;

        bool operator==(const Params& other) const;
        bool operator!=(const Params& other) const { return !(*this == other); }
    };
    using DiffuseGlowData = LXFilterData<Params>;

    LXDiffuseGlowProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    LXImageRGBA32i run(DiffuseGlowData data);

    /// The pixel becomes the colour as a whole, and then its alpha 0 if the pixel was darker than
    /// the threshold and 255 if not. Brightness is (11 blue + 59 green + 30 red) / 100.
    class LIBIMAGE_EXPORT LXColorizeThreshold {
    public:
        LXColorizeThreshold(int threshold, const LXRGBA32i& color)
            : m_threshold(threshold), m_color(color) {}
        void operator()(LXRGBA32i& p) const {
            const int luma = (p.blue * 11 + p.green * 59 + p.red * 30) / 100;
            p = m_color;
            p.alpha = luma < m_threshold ? 0 : 255;
        }

    private:
        int m_threshold;
        LXRGBA32i m_color;
    };

    /// Alpha becomes 0 below the threshold, and 255 from it on.
    class LIBIMAGE_EXPORT LXAlphaThreshold {
    public:
        explicit LXAlphaThreshold(int threshold) : m_threshold(threshold) {}
        void operator()(LXRGBA32i& p) const { p.alpha = p.alpha < m_threshold ? 0 : 255; }

    private:
        int m_threshold;
    };
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXDiffuseGlowProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXDiffuseGlowProcessing::Params&);
