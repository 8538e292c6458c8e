#pragma once

#include "LXImage.h"

/// A mask from a picture file, as the library wants masks: the value in alpha, colours 0. It is the
/// picture's transparency if it has any, and else its brightness: white lets through.
LXImageRGBA32i LoadMask(const QString& path);

/// The same of pixels that are loaded.
void MakeMask(LXImageRGBA32i& pixels);

/// The opposite: an opaque picture of the mask's values, white where it lets through.
void MakeVisible(LXImageRGBA32i& mask);
