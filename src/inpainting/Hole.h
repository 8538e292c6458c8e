#pragma once

#include "inpainting/Band.h"

namespace Inpainting {

/// Pixels that a pass has filled: bits of the run that begins at x.
struct FilledRun {
    int x, y;
    Run pixels;
};

/// How a hole grows together: what is known of an area by now, and the band of pixels that are
/// tried. Literally, a pass goes over the pixels of the band. Known ones leave it; of the others
/// those that have a window are filled, and take their unknown neighbours into the band.
struct Hole {
    /// All is known at first, and the band is empty.
    explicit Hole(const QRect& area);

    /// Makes those pixels of a row unknown that are marked as such.
    void Open(const std::uint32_t* marks, int x, int y, int count);
    /// Takes those that are marked in a row into the band.
    void AddToBand(const std::uint32_t* marks, int x, int y, int count);
    /// Puts into the band what is a hole by itself. It has no gradient in itself, so that the edges
    /// of a mask do not lead to it.
    void AddLone();

    /// The pixels of a run that can be filled.
    Run Fillable(int x, int y) const {
        const auto row = [&](int dy) { return known.GetWide(x, y + dy); };
        return Narrowed(HaveWindow(row(-2), row(-1), row(0), row(1), row(2)) & ~row(0));
    }

    /// Ends a pass. What is known changes only now, and last of all, so that all pixels of a pass
    /// see the same. Of neighbours that were filled in one pass each takes those before it into the
    /// band again: this is why a pass that only finds known pixels follows.
    void Close(std::vector<FilledRun>& filled);

    QRect area;
    BitPlane known;
    BitPlane markable; ///< unknown, and to come into the band when a neighbour is filled
    Band band;
};

} // namespace Inpainting
