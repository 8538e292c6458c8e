#pragma once

#include "LXPixel.h"

/// An adjustment that also carries a pixel buffer of the application, under the name
/// LXIterative... of its adjustment. It is constructed and applied as the adjustment is.
///
/// The library only keeps the pointer, null at first: it neither owns nor reads the buffer. Must
/// not be set while it is read.
template <class Adjustment>
class LXIterativeAdjustment : public Adjustment {
public:
    using Adjustment::Adjustment;

    void SetProcessingBuffer(LXRGBA32i* buffer) { m_buffer = buffer; }
    LXRGBA32i* GetProcessingBuffer() const { return m_buffer; }

private:
    LXRGBA32i* m_buffer = nullptr;
};
