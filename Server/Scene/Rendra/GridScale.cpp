#include "Server/Scene/Rendra/GridScale.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Rendra {

namespace {

/// Numbers with this many digits can still be read at a glance.
constexpr int kMostDigits = 6;

} // namespace

GridScale::GridScale(double least)
{
    m_exponent = int(std::floor(std::log10(least)));
    const double lead = least / std::pow(10.0, m_exponent);
    // A step that was requested exactly must not be missed by rounding.
    constexpr double kSlack = 1 - 1e-9;
    if (lead * kSlack <= 1)
        m_mantissa = 1;
    else if (lead * kSlack <= 2)
        m_mantissa = 2;
    else if (lead * kSlack <= 5)
        m_mantissa = 5;
    else
        ++m_exponent;
    m_minorsInMajor = m_mantissa == 2 ? 5 : 10;
}

double GridScale::minor() const
{
    return m_exponent < 0 ? m_mantissa / std::pow(10.0, -m_exponent)
                          : m_mantissa * std::pow(10.0, m_exponent);
}

std::wstring GridScale::number(int64_t index) const
{
    if (index == 0)
        return L"0";
    // The major step is 1 or 5 times a power of ten; digits are those of an integer, and so exact.
    const int64_t digits = index * (m_mantissa == 5 ? 5 : 1);
    const int exponent = m_exponent + 1;
    const double value =
        exponent < 0 ? double(digits) / std::pow(10.0, -exponent) : double(digits) * std::pow(10.0, exponent);
    const double size = std::abs(value);
    const bool plain = size < std::pow(10.0, kMostDigits) && exponent >= -kMostDigits + 2;
    char text[64];
    const auto end = plain ? std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed,
                                           std::max(0, -exponent))
                           : std::to_chars(std::begin(text), std::end(text), value,
                                           std::chars_format::general, kMostDigits);
    return std::wstring(text, end.ptr);
}

} // namespace Rendra
