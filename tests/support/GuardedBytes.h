#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// A buffer of exactly the size asked for, between two zones that must not be touched.
class GuardedBytes {
public:
    explicit GuardedBytes(std::size_t size, unsigned char value = 0)
        : m_bytes(size + 2 * Zone, Mark), m_size(size) {
        std::fill_n(Data(), size, value);
    }

    unsigned char* Data() { return m_bytes.data() + Zone; }
    unsigned char& operator[](std::size_t i) { return Data()[i]; }

    bool Intact() const {
        const auto marked = [](unsigned char byte) { return byte == Mark; };
        return std::all_of(m_bytes.begin(), m_bytes.begin() + Zone, marked) &&
               std::all_of(m_bytes.begin() + Zone + std::ptrdiff_t(m_size), m_bytes.end(), marked);
    }

private:
    static constexpr std::ptrdiff_t Zone = 64;
    static constexpr unsigned char Mark = 0xA5;

    std::vector<unsigned char> m_bytes;
    std::size_t m_size;
};
