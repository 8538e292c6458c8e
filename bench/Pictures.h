#pragma once

#include "LXImage.h"

#include <QtCore/QThreadPool>
#include <QtGui/QImage>

#include <benchmark/benchmark.h>

#include <cstddef>

/// What the benchmarks work on: pictures of 12.58 million random pixels.
namespace Bench {

constexpr unsigned int Width = 4096, Height = 3072;
constexpr std::size_t Pixels = std::size_t(Width) * Height;

const QImage& Picture();
const QImage& OtherPicture();
LXImageRGBA32i TiledPicture();

/// Tells how many items an iteration handles.
inline void Count(benchmark::State& state, std::size_t itemsAnIteration) {
    state.SetItemsProcessed(state.iterations() * std::int64_t(itemsAnIteration));
}

/// Steps share their lines out to Qt's pool: while this lives on one thread alone, for figures of
/// one core.
class OneThread {
public:
    OneThread() { QThreadPool::globalInstance()->setMaxThreadCount(1); }
    ~OneThread() { QThreadPool::globalInstance()->setMaxThreadCount(m_before); }
    OneThread(const OneThread&) = delete;
    OneThread& operator=(const OneThread&) = delete;

private:
    int m_before = QThreadPool::globalInstance()->maxThreadCount();
};

/// destination ^= source for a whole tile, at the memory's speed.
void XorTile(const LXRGBA32i* source, LXRGBA32i* destination);
/// The same for images of one size.
void XorImage(const LXImageRGBA32i& source, LXImageRGBA32i& destination);

} // namespace Bench
