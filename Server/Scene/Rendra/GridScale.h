#pragma once

#include <cstdint>
#include <string>

namespace Rendra {

/// How far apart the lines of the layout grid are: 1, 2 or 5 times a power of ten, in the unit in which
/// lengths are shown. Every fifth or tenth line is a major one, so that these are at round numbers too.
class GridScale
{
public:
    /// The narrowest spacing of at least `least`, which is positive.
    explicit GridScale(double least);

    double minor() const;
    double major() const { return minor() * m_minorsInMajor; }
    int minorsInMajor() const { return m_minorsInMajor; }
    /// The label of a major line, which is `index` lines from the origin: "-20", "0.5", "3e+08".
    std::wstring number(int64_t index) const;

private:
    int m_mantissa = 1; ///< 1, 2 or 5.
    int m_exponent = 0;
    int m_minorsInMajor = 10;
};

} // namespace Rendra
