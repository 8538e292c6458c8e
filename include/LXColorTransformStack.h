#pragma once

#include "LXColorTransformBase.h"

#include <QtCore/QMutex>
#include <QtCore/QVector>

/// A chain of transforms: `operator()` applies them in the order in which they were pushed,
/// `Invert` in the opposite order, each by its own Invert.
///
/// An image is transformed element by element if it is a QImage, and tile by tile, each tile
/// through the whole chain, if it is tiled. The elements' buffer operations get the size 16384 for
/// a tile then: the count of its pixels. Transforms that take the size for bytes, as
/// LXRGBChannelFilter and LXTCGrayscaleFromRGBA32iAlpha do, treat the upper 32 rows of each tile in
/// that way.
///
/// A null element is skipped, except by operator()(LXRGBA32i&), which must not meet one.
///
/// Every operation holds the stack's mutex to its end, also that over an image. So an element must
/// not use the stack that it is in.
class LIBIMAGE_EXPORT LXColorTransformStack : public LXColorTransformBase {
public:
    LXColorTransformStack() = default;
    /// Deletes the elements.
    ~LXColorTransformStack() override;
    LXColorTransformStack(const LXColorTransformStack&) = delete;
    LXColorTransformStack& operator=(const LXColorTransformStack&) = delete;

    /// The stack owns the element from now on.
    void Push(LXColorTransformBase* transform);
    /// Removes the last element and gives it back to the caller's ownership. Not on an empty stack.
    LXColorTransformBase* Pop();
    /// The last element, which stays. Not on an empty stack.
    LXColorTransformBase* Top() const;
    /// Removes all elements, one by one, without deleting any: the caller has to know them. (The
    /// destructor does delete.)
    void PopAll();
    bool isEmpty() const;

    void operator()(LXRGBA32i& pixel) const override;
    void operator()(LXRGBA64i& pixel) const override;
    void operator()(LXRGBA64f& pixel) const override;
    void operator()(LXRGBA128i& pixel) const override;
    void operator()(LXRGBA128f& pixel) const override;
    void operator()(LXHSLA& pixel) const override;
    void operator()(QImage& image) const override;
    void operator()(LXImageRGBA32i& image) const override;
    void Invert(LXRGBA32i& pixel) const override;
    void Invert(LXRGBA64i& pixel) const override;
    void Invert(LXRGBA64f& pixel) const override;
    void Invert(LXRGBA128i& pixel) const override;
    void Invert(LXRGBA128f& pixel) const override;
    void Invert(QImage& image) const override;
    void Invert(LXImageRGBA32i& image) const override;
    void operator()(void* pixels, unsigned int size) const override;
    void Invert(void* pixels, unsigned int size) const override;

private:
    mutable QMutex m_mutex{QMutex::NonRecursive};
    QVector<LXColorTransformBase*> m_transforms; // the bottom first
};
