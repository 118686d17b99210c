// Letters made of lines: complete, in their box, and distinguishable.

#include "Server/Scene/StrokeFont.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <set>

using Vs::Scene::StrokeFont;

namespace {

const std::wstring kCapitals = L"ABCDEFGHIJKLMNOPQRSTUVWXYZ\u00C4\u00D6\u00DC";
const std::wstring kSmallLetters = L"abcdefghijklmnopqrstuvwxyz\u00E4\u00F6\u00FC\u00DF";
const std::wstring kDigits = L"0123456789";
const std::wstring kSigns = L"-+.,:/()'\"\u00B0\u00B2\u00B3\u00B5";

/// The cells of a coarse raster that a letter's lines run through.
std::set<std::pair<int, int>> cellsOf(const StrokeFont::Glyph& glyph)
{
    std::set<std::pair<int, int>> cells;
    for (const StrokeFont::Polyline& line : glyph.lines)
        for (size_t i = 1; i < line.size(); ++i)
            for (double part = 0; part <= 1; part += 0.02) {
                const double x = line[i - 1].x + (line[i].x - line[i - 1].x) * part;
                const double y = line[i - 1].y + (line[i].y - line[i - 1].y) * part;
                cells.insert({int(std::floor(x * 8)), int(std::floor(y * 8))});
            }
    return cells;
}

TEST(StrokeFont, EveryLetterStaysInItsBoxAndFillsItsHeight)
{
    for (const wchar_t letter : kCapitals + kSmallLetters + kDigits + kSigns) {
        SCOPED_TRACE(testing::Message() << "letter " << int(letter));
        const StrokeFont::Glyph& glyph = StrokeFont::glyph(letter);
        ASSERT_FALSE(glyph.lines.empty());
        EXPECT_GT(glyph.advance, glyph.width) << "letters would touch";
        double low = 9, high = -9, left = 9, right = -9;
        for (const StrokeFont::Polyline& line : glyph.lines) {
            EXPECT_GE(line.size(), 2u);
            for (const GkPoint2d& point : line) {
                low = std::min(low, point.y), high = std::max(high, point.y);
                left = std::min(left, point.x), right = std::max(right, point.x);
            }
        }
        EXPECT_NEAR(left, 0, 0.101);
        EXPECT_LE(right, glyph.width + 0.05);
        EXPECT_GE(low, -0.27);
        EXPECT_LE(high, 1.3);
        if (kCapitals.find(letter) != std::wstring::npos || kDigits.find(letter) != std::wstring::npos) {
            EXPECT_NEAR(low, 0, 0.051);
            EXPECT_GE(high, 0.99);
        }
    }
}

TEST(StrokeFont, NoTwoLettersLookAlike)
{
    std::map<std::set<std::pair<int, int>>, wchar_t> seen;
    for (const wchar_t letter : kCapitals + kSmallLetters + kDigits + kSigns) {
        if (letter == L'l')
            continue; // as the capital I
        const auto [other, isNew] = seen.emplace(cellsOf(StrokeFont::glyph(letter)), letter);
        EXPECT_TRUE(isNew) << int(letter) << " looks like " << int(other->second);
    }
    EXPECT_TRUE(StrokeFont::glyph(L' ').lines.empty());
    EXPECT_FALSE(StrokeFont::glyph(L'\u2603').lines.empty()) << "what it has not is seen to be missing";
}

TEST(StrokeFont, NumbersOfEquallyManyDigitsAreEquallyWideAndATextIsAsWideAsItsLines)
{
    EXPECT_EQ(StrokeFont::width(L"11111"), StrokeFont::width(L"40786"));
    EXPECT_EQ(StrokeFont::width(L""), 0);
    EXPECT_TRUE(StrokeFont::lines(L"").empty());
    const std::wstring text = L"RIGHT-80";
    double left = 9, right = -9;
    for (const StrokeFont::Polyline& line : StrokeFont::lines(text))
        for (const GkPoint2d& point : line)
            left = std::min(left, point.x), right = std::max(right, point.x);
    EXPECT_NEAR(left, 0, 1e-9);
    EXPECT_NEAR(right, StrokeFont::width(text), 1e-9);
}

} // namespace
