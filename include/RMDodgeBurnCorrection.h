#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"

/// Dodging lightens a range of tones and burning darkens one; red, green and blue go through one
/// table, and alpha stays. Threads may share them while nobody sets.
///
/// With x = level / 255 and a = amount, 0 .. 1 in ordinary use, the table is f(x) * 255 + 0.5,
/// truncated. Amount 0 is the identity. The two are no mirrors of each other: their ranges differ
/// in strength, and shadows and highlights swap the shapes.

class LIBIMAGE_EXPORT RMDodgeCorrection {
public:
    enum RangeType : int {
        Shadows,   ///< x s + (1 - s), s = 1 - a / 2
        Midtones,  ///< sin(pi x) a / 4 + x
        Highlights ///< (exp(x) - 1) a + x
    };

    /// The identity.
    RMDodgeCorrection();
    /// As SetData, from a table of zeros.
    RMDodgeCorrection(double amount, RangeType range);

    /// Limited to 255 from above only; a negative value, of a negative amount, keeps its low byte.
    /// A range outside the enumeration leaves the table as it was.
    void SetData(double amount, RangeType range);

    void operator()(LXRGBA32i& pixel) const { LXApplyTable(m_table, pixel); }
    const LXByteTable& GetTable() const { return m_table; }

private:
    LXByteTable m_table;
};

class LIBIMAGE_EXPORT RMBurnCorrection {
public:
    enum RangeType : int {
        Shadows,   ///< (1 - exp(1 - x)) a + x
        Midtones,  ///< x - sin(pi x) a / 4
        Highlights ///< x (1 - 3 a / 4)
    };

    /// The identity.
    RMBurnCorrection();
    /// As SetData, from a table of zeros.
    RMBurnCorrection(double amount, RangeType range);

    /// Limited to 0 from below only; a value above 255, of a negative amount, keeps its low byte.
    /// A range outside the enumeration leaves the table as it was.
    void SetData(double amount, RangeType range);

    void operator()(LXRGBA32i& pixel) const { LXApplyTable(m_table, pixel); }
    const LXByteTable& GetTable() const { return m_table; }

private:
    LXByteTable m_table;
};
