#pragma once

#include "LXImage.h"

#include <optional>

/// An image to be read while another is written. If both are the same object this holds a copy of
/// it, so that the written tiles are detached from those that are read.
class LXSnapshot {
public:
    LXSnapshot(const LXImageRGBA32i& image, const LXImageRGBA32i& written)
        : m_image(&image == &written ? m_copy.emplace(image) : image) {}
    LXSnapshot(const LXSnapshot&) = delete;
    LXSnapshot& operator=(const LXSnapshot&) = delete;

    const LXImageRGBA32i& operator*() const { return m_image; }

private:
    std::optional<LXImageRGBA32i> m_copy;
    const LXImageRGBA32i& m_image;
};
