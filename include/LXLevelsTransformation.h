#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"
#include "LXIterativeAdjustment.h"

/// Input range, gamma and output range of each channel, and then of a master. Alpha stays.
/// Immutable after construction, so that threads may share it.
class LIBIMAGE_EXPORT LXLevelsTransformation {
public:
    /// The identity.
    LXLevelsTransformation();

    /// `inputs` and `outputs` are four (low, high) pairs of levels and `gammas` four gammas, each
    /// for master, red, green, blue. `amount` is a percentage: 0 is the identity, 100 the levels
    /// alone; outside that range the low byte of the mix is kept.
    ///
    /// A level below the input range gives the low output, one above it the high output. An output
    /// pair may descend; outputs beyond 0 .. 255 are cut off there. A level on an input range whose
    /// ends are equal gives the low output. Gammas are limited to 0.01 .. 9.99; the one of a
    /// channel acts in three steps only: below 1 all but the level 255 become 0, below 2 it is 1,
    /// and from 2 on all levels become 255, before the ranges.
    LXLevelsTransformation(int (*inputs)[2], int (*outputs)[2], double* gammas, int amount);

    void operator()(LXRGBA32i& pixel) const { m_tables(pixel); }
    const LXChannelTables& GetTables() const { return m_tables; }

private:
    LXChannelTables m_tables;
};

using LXIterativeLevelsTransformation = LXIterativeAdjustment<LXLevelsTransformation>;
