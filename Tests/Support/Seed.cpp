#include "Tests/Support/Seed.h"

#include <gtest/gtest.h>

unsigned TestSupport::seed()
{
    return static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed());
}
