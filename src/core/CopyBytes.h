#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Copies a piece of a row. memmove and not memcpy, although nothing overlaps: where the compiler
/// knows that a piece is short it expands memcpy in place, at half the speed of the C library's.
inline void CopyBytes(void* to, const void* from, std::size_t count) {
    std::memmove(to, from, count);
}

/// Copies the pieces of a picture that is too large for the caches past them, as memcpy does with
/// one large block: the target is not read first, which is a third of the traffic. Pieces of a
/// smaller picture are simply copied.
class PictureCopier {
public:
    explicit PictureCopier(std::size_t pictureBytes) : m_large(pictureBytes >= LargePicture) {}
    /// Makes the copied bytes visible to other threads in order.
    ~PictureCopier() {
#if defined(__SSE2__)
        _mm_sfence();
#endif
    }
    PictureCopier(const PictureCopier&) = delete;
    PictureCopier& operator=(const PictureCopier&) = delete;

    void operator()(void* to, const void* from, std::size_t count) const {
        constexpr std::size_t vector = 16;
        const bool aligned = reinterpret_cast<std::uintptr_t>(to) % vector == 0;
        if (m_large && aligned && count % vector == 0)
            Stream(to, from, count);
        else
            CopyBytes(to, from, count);
    }

private:
    static constexpr std::size_t LargePicture = 16 << 20;

    static void Stream(void* to, const void* from, std::size_t count) {
#if defined(__SSE2__)
        auto* const target = static_cast<__m128i*>(to);
        const auto* const source = static_cast<const __m128i*>(from);
        for (std::size_t i = 0; i < count / sizeof(__m128i); ++i)
            _mm_stream_si128(target + i, _mm_loadu_si128(source + i));
#else
        CopyBytes(to, from, count);
#endif
    }

    bool m_large;
};
