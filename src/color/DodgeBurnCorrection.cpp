#include "RMDodgeBurnCorrection.h"

#include "color/ByteTables.h"

namespace {

constexpr double Pi = 3.14159265358979323846;

/// f(x) * 255 + 0.5 for each level x * 255, as `store` makes a byte of it.
template <class Curve, class Store>
LXByteTable CurveTable(Curve f, Store store) {
    return MakeByteTable([&](int i) { return store(f(i / 255.0) * 255.0 + 0.5); });
}

// Each class limits one end only, the one that its ordinary amounts run into; at the other end the
// byte wraps. Amounts below 0 show it, as the header tells.

int StoreDodged(double value) {
    return value >= 255 ? 255 : TruncateToInt(value);
}

int StoreBurned(double value) {
    return value < 1 ? 0 : TruncateToInt(value);
}

} // namespace

RMDodgeCorrection::RMDodgeCorrection() : m_table(IdentityTable()) {}

RMDodgeCorrection::RMDodgeCorrection(double amount, RangeType range) : m_table(256) {
    SetData(amount, range);
}

void RMDodgeCorrection::SetData(double amount, RangeType range) {
    switch (range) {
    case Shadows: {
        const double slope = amount * -0.5 + 1;
        m_table = CurveTable([=](double x) { return x * slope + (1 - slope); }, StoreDodged);
        break;
    }
    case Midtones:
        m_table = CurveTable([=](double x) { return std::sin(x * Pi) * (amount * 0.25) + x; },
                             StoreDodged);
        break;
    case Highlights:
        m_table = CurveTable([=](double x) { return (std::exp(x) - 1) * amount + x; }, StoreDodged);
        break;
    }
}

RMBurnCorrection::RMBurnCorrection() : m_table(IdentityTable()) {}

RMBurnCorrection::RMBurnCorrection(double amount, RangeType range) : m_table(256) {
    SetData(amount, range);
}

void RMBurnCorrection::SetData(double amount, RangeType range) {
    switch (range) {
    case Shadows:
        m_table =
            CurveTable([=](double x) { return (1 - std::exp(1 - x)) * amount + x; }, StoreBurned);
        break;
    case Midtones:
        m_table = CurveTable([=](double x) { return x - std::sin(x * Pi) * (amount * 0.25); },
                             StoreBurned);
        break;
    case Highlights:
        m_table = CurveTable([=](double x) { return x * (1 - amount * 0.75); }, StoreBurned);
        break;
    }
}
