#pragma once

#include "LXExport.h"
#include "LXPixel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The two scratch lines that a one-dimensional kernel works between.
///
/// All kernels have the same members, with no base in common:
///   SetSource, SetDestination   borrow two different lines, which must outlive the calls
///   SetSourceOffset(offset)     destination i is centred on source i + offset; any int
///   Left(), Right()             how far the kernel reaches on each side, in pixels
///   operator()(i)               computes destination i, which must exist
/// Beyond the ends of the source its end pixels go on, unless the kernel says otherwise.
///
/// The set-up comes first, from one thread. After it, operator() only reads the kernel and the
/// source and writes the one element i: it may be called for any index, in any order, from any
/// number of threads. The source must have a pixel, and no more than 2^31 - 1 of them.
class LIBIMAGE_EXPORT LXKernelLines {
public:
    void SetSource(const std::vector<LXRGBA32i>* source) {
        m_last = source ? static_cast<int>(source->size()) - 1 : -1;
        m_source = source;
    }
    void SetDestination(std::vector<LXRGBA32i>* destination) { m_destination = destination; }
    void SetSourceOffset(int offset) { m_offset = offset; }

    /// The last index of the source; -1 without one.
    int Last() const { return m_last; }
    /// The source position of destination i. In 64 bits, so that no offset or reach overflows.
    std::int64_t Centre(int i) const { return std::int64_t(i) + m_offset; }
    bool Contains(std::int64_t position) const { return position >= 0 && position <= m_last; }

    /// The source pixel at a position limited to the line.
    const LXRGBA32i& Source(std::int64_t position) const {
        const std::int64_t limited =
            std::max<std::int64_t>(std::min<std::int64_t>(position, m_last), 0);
        return (*m_source)[static_cast<std::size_t>(limited)];
    }
    LXRGBA32i& Destination(int i) const { return (*m_destination)[static_cast<std::size_t>(i)]; }

private:
    int m_last = -1;
    int m_offset = 0;
    const std::vector<LXRGBA32i>* m_source = nullptr;
    std::vector<LXRGBA32i>* m_destination = nullptr;
};
