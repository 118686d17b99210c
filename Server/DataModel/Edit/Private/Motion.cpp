#include "Server/DataModel/Edit/Private/Motion.h"

#include <cmath>

namespace Vs {

bool isMotion(const GkMatrix3d& matrix)
{
    constexpr double kTolerance = 1e-9;
    bool rigid = true;
    for (int i = 0; i < 3; ++i)
        for (int k = 0; k < 3; ++k) {
            double dot = 0;
            for (int row = 0; row < 3; ++row)
                dot += matrix.entry[row][i] * matrix.entry[row][k];
            rigid &= std::abs(dot - (i == k)) < kTolerance;
        }
    return rigid && matrix.det() > 0;
}

bool isNear(const GkMatrix3d& matrix)
{
    constexpr double kFarthest = 1e9; // mm
    bool near = true;
    for (const auto& row : matrix.entry)
        near &= std::abs(row[3]) < kFarthest;
    return near;
}

} // namespace Vs
