#pragma once

#include <optional>

/// An image to be read while another is written. If both are the same object this holds a copy of
/// it, so that the written tiles are detached from those that are read.
template <class Image>
class LXSnapshot {
public:
    template <class Written>
    LXSnapshot(const Image& image, const Written& written)
        : m_image(static_cast<const void*>(&image) == static_cast<const void*>(&written)
                      ? m_copy.emplace(image)
                      : image) {}
    LXSnapshot(const LXSnapshot&) = delete;
    LXSnapshot& operator=(const LXSnapshot&) = delete;

    const Image& operator*() const { return m_image; }

private:
    std::optional<Image> m_copy;
    const Image& m_image;
};
