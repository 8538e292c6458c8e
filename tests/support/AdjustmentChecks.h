#pragma once

#include "LXChannelArithmetic.h"
#include "support/Pictures.h"
#include "support/ReferenceAdjustments.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

inline Reference::Table Entries(const LXByteTable& table) {
    return Reference::Table(table.begin(), table.end());
}

inline std::array<Reference::Table, 3> Entries(const LXChannelTables& tables) {
    return {Entries(tables.red), Entries(tables.green), Entries(tables.blue)};
}

inline Reference::Table Identity() {
    Reference::Table table(256);
    for (int i = 0; i < 256; ++i)
        table[std::size_t(i)] = i;
    return table;
}

/// The value is `result`; alpha, which is not given, stays.
template <class Transform>
void ExpectColour(const Transform& transform, std::array<int, 3> rgb, std::array<int, 3> result) {
    LXRGBA32i pixel{std::uint8_t(rgb[2]), std::uint8_t(rgb[1]), std::uint8_t(rgb[0]), 77};
    transform(pixel);
    EXPECT_EQ((std::array<int, 3>{pixel.red, pixel.green, pixel.blue}), result);
    EXPECT_EQ(pixel.alpha, 77);
}

/// The sibling under its own name does what the adjustment does, and keeps a pointer for others.
template <class Sibling, class Adjustment, class... Arguments>
void CheckSibling(Arguments... arguments) {
    static_assert(std::is_base_of_v<Adjustment, Sibling>);
    const Adjustment plain(arguments...);
    Sibling sibling(arguments...);
    EXPECT_EQ(sibling.GetProcessingBuffer(), nullptr);
    LXRGBA32i buffer{1, 2, 3, 4};
    sibling.SetProcessingBuffer(&buffer);
    const Sibling copy = sibling;
    EXPECT_EQ(copy.GetProcessingBuffer(), &buffer);
    RandomPixels random(7);
    for (int n = 0; n < 200; ++n) {
        LXRGBA32i a = random.Pixel(), b = a;
        plain(a);
        copy(b);
        ASSERT_EQ(a, b);
    }
    EXPECT_EQ(buffer, (LXRGBA32i{1, 2, 3, 4}));
}
