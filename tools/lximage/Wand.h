#pragma once

#include "CommandLine.h"
#include "LXImage.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>

/// What the commands have in common that begin at a seed: its place, tolerance and colour.
struct Wand {
    QPoint seed;
    LXRGBA32i tolerance;
    LXRGBA32i color;

    static void AddOptions(CommandLine& line, const QString& color, const QString& colorText);
    /// Throws UsageError for values that make no sense, and if there is no seed.
    static Wand Read(const CommandLine& line);

    /// Throws Failure if the seed lies outside the picture.
    void CheckSeed(const LXImageRGBA32i& image, const QString& name) const;
};

/// Prints the rectangle that was found, unless standard output has the picture.
void PrintBounds(const QRect& bounds, const QString& out);
