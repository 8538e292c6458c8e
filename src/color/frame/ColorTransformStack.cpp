#include "LXColorTransformStack.h"

#include "LXTileAccess.h"
#include "core/MutexLocker.h"

#include <QtCore/QtAlgorithms>

namespace {

/// What the elements are told to be the size of a tile: the count of its pixels, where a transform
/// that walks an image by itself counts bytes. Both are part of the interface, so the two are not
/// to be made one.
constexpr unsigned int TileSize = LXImageRGBA32i::Block::PixelCount;

using Elements = QVector<LXColorTransformBase*>;

/// Calls `apply(element)` for all elements but null ones, the first pushed first.
template <class Apply>
void Forwards(const Elements& elements, Apply apply) {
    for (const LXColorTransformBase* element : elements)
        if (element)
            apply(*element);
}

/// The last pushed first.
template <class Apply>
void Backwards(const Elements& elements, Apply apply) {
    for (auto element = elements.crbegin(); element != elements.crend(); ++element)
        if (*element)
            apply(**element);
}

/// Opens each tile once, for `apply(memory)`; a missing one has null memory.
template <class Apply>
void ForTileMemory(LXImageRGBA32i& image, Apply apply) {
    for (unsigned int row = 0; row < image.GetTilesY(); ++row)
        for (unsigned int column = 0; column < image.GetTilesX(); ++column) {
            const LXTileWriter tile(image.GetTileRow(row)[column]);
            apply(static_cast<void*>(tile.Pixels()));
        }
}

} // namespace

LXColorTransformStack::~LXColorTransformStack() {
    qDeleteAll(m_transforms);
}

void LXColorTransformStack::Push(LXColorTransformBase* transform) {
    const MutexLocker lock(m_mutex);
    m_transforms.append(transform);
}

LXColorTransformBase* LXColorTransformStack::Pop() {
    const MutexLocker lock(m_mutex);
    return m_transforms.takeLast();
}

LXColorTransformBase* LXColorTransformStack::Top() const {
    const MutexLocker lock(m_mutex);
    return m_transforms.last();
}

void LXColorTransformStack::PopAll() {
    while (!isEmpty())
        Pop();
}

bool LXColorTransformStack::isEmpty() const {
    const MutexLocker lock(m_mutex);
    return m_transforms.isEmpty();
}

// The only operation that does not look for null elements, as it is called for each pixel of a
// view.
void LXColorTransformStack::operator()(LXRGBA32i& pixel) const {
    const MutexLocker lock(m_mutex);
    for (const LXColorTransformBase* element : m_transforms)
        (*element)(pixel);
}

#define LX_STACK_APPLIES(Subject)                                                                  \
    void LXColorTransformStack::operator()(Subject& subject) const {                               \
        const MutexLocker lock(m_mutex);                                                           \
        Forwards(m_transforms, [&](const LXColorTransformBase& element) { element(subject); });    \
    }
#define LX_STACK_INVERTS(Subject)                                                                  \
    void LXColorTransformStack::Invert(Subject& subject) const {                                   \
        const MutexLocker lock(m_mutex);                                                           \
        Backwards(m_transforms,                                                                    \
                  [&](const LXColorTransformBase& element) { element.Invert(subject); });          \
    }

LX_STACK_APPLIES(LXRGBA64i)
LX_STACK_APPLIES(LXRGBA64f)
LX_STACK_APPLIES(LXRGBA128i)
LX_STACK_APPLIES(LXRGBA128f)
LX_STACK_APPLIES(LXHSLA)
LX_STACK_APPLIES(QImage)
LX_STACK_INVERTS(LXRGBA32i)
LX_STACK_INVERTS(LXRGBA64i)
LX_STACK_INVERTS(LXRGBA64f)
LX_STACK_INVERTS(LXRGBA128i)
LX_STACK_INVERTS(LXRGBA128f)
LX_STACK_INVERTS(QImage)

// A tile goes through the whole chain while it is open.
void LXColorTransformStack::operator()(LXImageRGBA32i& image) const {
    const MutexLocker lock(m_mutex);
    ForTileMemory(image, [&](void* memory) {
        Forwards(m_transforms,
                 [&](const LXColorTransformBase& element) { element(memory, TileSize); });
    });
}

void LXColorTransformStack::Invert(LXImageRGBA32i& image) const {
    const MutexLocker lock(m_mutex);
    ForTileMemory(image, [&](void* memory) {
        Backwards(m_transforms,
                  [&](const LXColorTransformBase& element) { element.Invert(memory, TileSize); });
    });
}

void LXColorTransformStack::operator()(void* pixels, unsigned int size) const {
    const MutexLocker lock(m_mutex);
    Forwards(m_transforms, [&](const LXColorTransformBase& element) { element(pixels, size); });
}

void LXColorTransformStack::Invert(void* pixels, unsigned int size) const {
    const MutexLocker lock(m_mutex);
    Backwards(m_transforms,
              [&](const LXColorTransformBase& element) { element.Invert(pixels, size); });
}
