#pragma once

#include "Server/Geometry/BBox.h"

#include <gtest/gtest.h>
#include <ostream>

inline void PrintTo(const GkPoint3d& p, std::ostream* out)
{
    *out << '(' << p.x << ", " << p.y << ", " << p.z << ')';
}

inline void PrintTo(const GkVector3d& v, std::ostream* out)
{
    *out << '<' << v.x << ", " << v.y << ", " << v.z << '>';
}

/// Fails with both places in the message unless they are within a nanometre.
inline testing::AssertionResult isNear(const GkPoint3d& actual, const GkPoint3d& expected)
{
    if (actual.isEqualTo(expected))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << testing::PrintToString(actual) << " is not " << testing::PrintToString(expected);
}

inline testing::AssertionResult isNear(const GkVector3d& actual, const GkVector3d& expected)
{
    if (actual.isEqualTo(expected))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << testing::PrintToString(actual) << " is not " << testing::PrintToString(expected);
}
