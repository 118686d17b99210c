#include "Server/Types/PointText.h"
#include "Server/Types/Uuid.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace Vs;

TEST(TextForms, PointsReadBackAsExactlyTheSameValues)
{
    std::mt19937_64 random(20);
    for (int i = 0; i < 2000; ++i) {
        GkPoint3d point;
        for (double* value : {&point.x, &point.y, &point.z}) {
            do {
                const uint64_t bits = random();
                static_assert(sizeof bits == sizeof *value);
                std::memcpy(value, &bits, sizeof bits);
            } while (!std::isfinite(*value));
        }
        GkPoint3d back;
        ASSERT_TRUE(Types::StringToPoint3d(Types::Point3dToString(point), back));
        EXPECT_EQ(point.x, back.x);
        EXPECT_EQ(point.y, back.y);
        EXPECT_EQ(point.z, back.z);
    }
}

TEST(TextForms, PointsAreWrittenShortAndWithCommas)
{
    EXPECT_EQ(Types::Point3dToString({1, 2.5, -0.1}), L"1,2.5,-0.1");
    EXPECT_EQ(Types::Vector3dToString({0, 1e30, 1.0 / 3}), L"0,1e+30,0.3333333333333333");
}

TEST(TextForms, WhatPeopleTypeIsReadToo)
{
    GkPoint3d point;
    ASSERT_TRUE(Types::StringToPoint3d(L"( 1 , +2,\t-3.5e1 )", point));
    EXPECT_EQ(point.y, 2);
    EXPECT_EQ(point.z, -35);
    GkVector3d vector;
    EXPECT_TRUE(Types::StringToVector3d(L"0,0,1", vector));
}

TEST(TextForms, AnythingElseIsRefusedAndLeavesTheResultAlone)
{
    for (const wchar_t* text : {L"", L"1,2", L"1,2,3,4", L"1;2;3", L"a,b,c", L"1,2,", L"(1,2,3", L"1,2,3)",
                                L"nan,0,0", L"1,inf,2", L"1e999,0,0", L"1,2,3mm", L"+-1,2,3", L",,"}) {
        GkPoint3d point{7, 8, 9};
        EXPECT_FALSE(Types::StringToPoint3d(text, point)) << text;
        EXPECT_EQ(point.y, 8) << text;
    }
}

TEST(TextForms, IdentifiersAreUniqueAndReadBack)
{
    const auto uuid = makeUuid();
    EXPECT_NE(uuid, makeUuid());
    EXPECT_EQ(fromString(fromUuid(uuid)), uuid);
    EXPECT_EQ(fromString(L"{" + fromUuid(uuid) + L"}"), uuid);
    for (const wchar_t* text : {L"", L"x", L"0123", L"not-an-identifier-at-all-0123456789ab"})
        EXPECT_TRUE(fromString(text).is_nil()) << text;
}
