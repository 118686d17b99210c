#include "Server/Scene/StrokeFont.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>

namespace Vs::Scene {

namespace {

/// Between two letters.
constexpr double kGap = 0.24;
constexpr double kDigitWidth = 0.56;
/// The x-height, and the middle of what is round in a small letter.
constexpr double kSmall = 0.66, kHalfSmall = kSmall / 2;
/// The height of a dot: in letters of 9 pixels it still covers one and a half, wherever it falls between
/// them.
constexpr double kDot = 0.17;
/// An arc has a corner every this many degrees: round enough for a letter of a few hundred pixels.
constexpr double kArcStep = 15;

/// Draws a glyph.
class Pen
{
public:
    explicit Pen(double width) { m_glyph = {width, width + kGap, {}}; }

    Pen& line(std::initializer_list<GkPoint2d> points)
    {
        m_glyph.lines.emplace_back(points);
        return *this;
    }
    Pen& to(double x, double y)
    {
        m_glyph.lines.back().push_back({x, y});
        return *this;
    }
    /// Continues the line along an ellipse; degrees run counter-clockwise from the right.
    Pen& arcTo(double x, double y, double radiusX, double radiusY, double from, double to)
    {
        const int steps = std::max(2, int(std::lround(std::abs(to - from) / kArcStep)));
        for (int i = 0; i <= steps; ++i) {
            const double angle = (from + (to - from) * i / steps) * std::numbers::pi / 180;
            m_glyph.lines.back().push_back({x + radiusX * std::cos(angle), y + radiusY * std::sin(angle)});
        }
        return *this;
    }
    Pen& arc(double x, double y, double radiusX, double radiusY, double from, double to)
    {
        m_glyph.lines.emplace_back();
        return arcTo(x, y, radiusX, radiusY, from, to);
    }
    Pen& add(const StrokeFont::Glyph& other)
    {
        m_glyph.lines.insert(m_glyph.lines.end(), other.lines.begin(), other.lines.end());
        return *this;
    }
    Pen& twoDots(double y)
    {
        const double middle = m_glyph.width / 2;
        for (const double x : {middle - 0.13, middle + 0.13})
            line({{x, y}, {x, y + kDot}});
        return *this;
    }
    operator StrokeFont::Glyph() const { return m_glyph; }

private:
    StrokeFont::Glyph m_glyph;
};

using Glyphs = std::unordered_map<wchar_t, StrokeFont::Glyph>;

void addCapitals(Glyphs& g)
{
    g[L'A'] = Pen(0.70).line({{0, 0}, {0.35, 1}, {0.70, 0}}).line({{0.12, 0.34}, {0.58, 0.34}});
    g[L'B'] = Pen(0.60)
                  .line({{0, 0}, {0, 1}})
                  .arcTo(0.32, 0.76, 0.24, 0.24, 90, -90)
                  .to(0, 0.52)
                  .arc(0.32, 0.26, 0.28, 0.26, 90, -90)
                  .to(0, 0);
    g[L'C'] = Pen(0.66).arc(0.36, 0.5, 0.36, 0.5, 45, 315);
    g[L'D'] = Pen(0.66).line({{0, 0}, {0, 1}}).arcTo(0.22, 0.5, 0.44, 0.5, 90, -90).to(0, 0);
    g[L'E'] = Pen(0.52).line({{0.52, 1}, {0, 1}, {0, 0}, {0.52, 0}}).line({{0, 0.52}, {0.44, 0.52}});
    g[L'F'] = Pen(0.50).line({{0.50, 1}, {0, 1}, {0, 0}}).line({{0, 0.52}, {0.42, 0.52}});
    g[L'G'] = Pen(0.72).arc(0.36, 0.5, 0.36, 0.5, 45, 345).to(0.71, 0.46).to(0.42, 0.46);
    g[L'H'] = Pen(0.62).line({{0, 0}, {0, 1}}).line({{0.62, 0}, {0.62, 1}}).line({{0, 0.52}, {0.62, 0.52}});
    g[L'I'] = Pen(0.02).line({{0.01, 0}, {0.01, 1}});
    g[L'J'] = Pen(0.44).line({{0.44, 1}}).arcTo(0.22, 0.24, 0.22, 0.24, 0, -180);
    g[L'K'] = Pen(0.60).line({{0, 0}, {0, 1}}).line({{0.58, 1}, {0, 0.4}}).line({{0.2, 0.607}, {0.60, 0}});
    g[L'L'] = Pen(0.50).line({{0, 1}, {0, 0}, {0.50, 0}});
    g[L'M'] = Pen(0.78).line({{0, 0}, {0, 1}, {0.39, 0.3}, {0.78, 1}, {0.78, 0}});
    g[L'N'] = Pen(0.62).line({{0, 0}, {0, 1}, {0.62, 0}, {0.62, 1}});
    g[L'O'] = Pen(0.76).arc(0.38, 0.5, 0.38, 0.5, 90, 450);
    g[L'P'] = Pen(0.59).line({{0, 0}, {0, 1}}).arcTo(0.32, 0.73, 0.27, 0.27, 90, -90).to(0, 0.46);
    g[L'Q'] = Pen(0.76).add(g[L'O']).line({{0.48, 0.24}, {0.76, -0.05}});
    g[L'R'] = Pen(0.60).add(g[L'P']).line({{0.30, 0.46}, {0.60, 0}});
    g[L'S'] = Pen(0.57).arc(0.285, 0.76, 0.255, 0.24, 35, 270).arcTo(0.285, 0.26, 0.285, 0.26, 90, -145);
    g[L'T'] = Pen(0.64).line({{0, 1}, {0.64, 1}}).line({{0.32, 1}, {0.32, 0}});
    g[L'U'] = Pen(0.62).line({{0, 1}}).arcTo(0.31, 0.31, 0.31, 0.31, 180, 360).to(0.62, 1);
    g[L'V'] = Pen(0.68).line({{0, 1}, {0.34, 0}, {0.68, 1}});
    g[L'W'] = Pen(0.92).line({{0, 1}, {0.22, 0}, {0.46, 0.85}, {0.70, 0}, {0.92, 1}});
    g[L'X'] = Pen(0.62).line({{0, 0}, {0.62, 1}}).line({{0, 1}, {0.62, 0}});
    g[L'Y'] = Pen(0.64).line({{0, 1}, {0.32, 0.48}, {0.64, 1}}).line({{0.32, 0.48}, {0.32, 0}});
    g[L'Z'] = Pen(0.58).line({{0, 1}, {0.58, 1}, {0, 0}, {0.58, 0}});
    for (const auto& [with, without] : {std::pair(L'\u00C4', L'A'), {L'\u00D6', L'O'}, {L'\u00DC', L'U'}})
        g[with] = Pen(g[without].width).add(g[without]).twoDots(1.12);
}

void addSmallLetters(Glyphs& g)
{
    const StrokeFont::Glyph round = Pen(0.5).arc(0.25, kHalfSmall, 0.25, kHalfSmall, 0, 360);
    g[L'o'] = round;
    g[L'a'] = Pen(0.50).add(round).line({{0.50, kSmall}, {0.50, 0}});
    g[L'b'] = Pen(0.50).add(round).line({{0, 1}, {0, 0}});
    g[L'c'] = Pen(0.43).arc(0.25, kHalfSmall, 0.25, kHalfSmall, 45, 315);
    g[L'd'] = Pen(0.50).add(round).line({{0.50, 1}, {0.50, 0}});
    g[L'e'] = Pen(0.50).line({{0, 0.35}}).arcTo(0.25, kHalfSmall, 0.25, kHalfSmall, 4, 315);
    g[L'f'] = Pen(0.36).arc(0.32, 0.80, 0.20, 0.20, 75, 180).to(0.12, 0).line({{0, kSmall}, {0.34, kSmall}});
    g[L'g'] = Pen(0.50).add(round).line({{0.50, kSmall}}).arcTo(0.26, -0.04, 0.24, 0.22, 0, -145);
    g[L'h'] = Pen(0.48).line({{0, 1}, {0, 0}}).arc(0.24, 0.42, 0.24, 0.24, 180, 0).to(0.48, 0);
    g[L'i'] = Pen(0.02).line({{0.01, kSmall}, {0.01, 0}}).line({{0.01, 0.86}, {0.01, 0.86 + kDot}});
    g[L'j'] = Pen(0.16)
                  .line({{0.16, kSmall}})
                  .arcTo(0, -0.10, 0.16, 0.16, 0, -90)
                  .line({{0.16, 0.86}, {0.16, 0.86 + kDot}});
    g[L'k'] =
        Pen(0.44).line({{0, 1}, {0, 0}}).line({{0.42, kSmall}, {0, 0.24}}).line({{0.15, 0.39}, {0.44, 0}});
    g[L'l'] = Pen(0.02).line({{0.01, 1}, {0.01, 0}});
    g[L'm'] = Pen(0.76)
                  .line({{0, kSmall}, {0, 0}})
                  .arc(0.19, 0.46, 0.19, 0.20, 180, 0)
                  .to(0.38, 0)
                  .arc(0.57, 0.46, 0.19, 0.20, 180, 0)
                  .to(0.76, 0);
    g[L'n'] = Pen(0.48).line({{0, kSmall}, {0, 0}}).arc(0.24, 0.42, 0.24, 0.24, 180, 0).to(0.48, 0);
    g[L'p'] = Pen(0.50).add(round).line({{0, kSmall}, {0, -0.26}});
    g[L'q'] = Pen(0.50).add(round).line({{0.50, kSmall}, {0.50, -0.26}});
    g[L'r'] = Pen(0.32).line({{0, kSmall}, {0, 0}}).arc(0.24, 0.42, 0.24, 0.24, 180, 70);
    g[L's'] = Pen(0.42).arc(0.21, 0.50, 0.19, 0.16, 35, 270).arcTo(0.21, 0.17, 0.21, 0.17, 90, -145);
    g[L't'] = Pen(0.34)
                  .line({{0.14, 0.90}})
                  .arcTo(0.30, 0.17, 0.16, 0.17, 180, 285)
                  .line({{0, kSmall}, {0.32, kSmall}});
    g[L'u'] = Pen(0.48)
                  .line({{0, kSmall}})
                  .arcTo(0.24, 0.24, 0.24, 0.24, 180, 360)
                  .line({{0.48, kSmall}, {0.48, 0}});
    g[L'v'] = Pen(0.48).line({{0, kSmall}, {0.24, 0}, {0.48, kSmall}});
    g[L'w'] = Pen(0.68).line({{0, kSmall}, {0.17, 0}, {0.34, 0.58}, {0.51, 0}, {0.68, kSmall}});
    g[L'x'] = Pen(0.44).line({{0, 0}, {0.44, kSmall}}).line({{0, kSmall}, {0.44, 0}});
    g[L'y'] = Pen(0.50).line({{0, kSmall}, {0.25, 0}}).line({{0.50, kSmall}, {0.15, -0.26}});
    g[L'z'] = Pen(0.42).line({{0, kSmall}, {0.42, kSmall}, {0, 0}, {0.42, 0}});
    g[L'\u00DF'] = Pen(0.48)
                       .line({{0, 0}})
                       .arcTo(0.22, 0.77, 0.22, 0.23, 180, -90)
                       .arcTo(0.22, 0.27, 0.26, 0.27, 90, -110);
    for (const auto& [with, without] : {std::pair(L'\u00E4', L'a'), {L'\u00F6', L'o'}, {L'\u00FC', L'u'}})
        g[with] = Pen(g[without].width).add(g[without]).twoDots(0.84);
}

void addDigitsAndSigns(Glyphs& g)
{
    g[L'0'] = Pen(kDigitWidth).arc(0.28, 0.5, 0.28, 0.5, 90, 450);
    g[L'1'] = Pen(kDigitWidth).line({{0.10, 0.78}, {0.32, 1}, {0.32, 0}});
    g[L'2'] = Pen(kDigitWidth).arc(0.28, 0.73, 0.27, 0.27, 165, -30).to(0, 0).to(0.56, 0);
    g[L'3'] = Pen(kDigitWidth).arc(0.27, 0.76, 0.25, 0.24, 145, -90).arcTo(0.27, 0.26, 0.28, 0.26, 90, -145);
    g[L'4'] = Pen(kDigitWidth).line({{0.42, 0}, {0.42, 1}, {0, 0.3}, {0.56, 0.3}});
    g[L'5'] =
        Pen(kDigitWidth).line({{0.50, 1}, {0.09, 1}, {0.05, 0.53}}).arcTo(0.27, 0.32, 0.28, 0.32, 140, -145);
    g[L'6'] = Pen(kDigitWidth).arc(0.52, 0.3, 0.52, 0.7, 97, 180).arcTo(0.28, 0.3, 0.28, 0.3, 180, 540);
    g[L'7'] = Pen(kDigitWidth).line({{0, 1}, {0.56, 1}, {0.18, 0}});
    g[L'8'] = Pen(kDigitWidth).arc(0.28, 0.76, 0.25, 0.24, -90, 270).arc(0.28, 0.26, 0.28, 0.26, 90, 450);
    g[L'9'] = Pen(kDigitWidth).arc(0.28, 0.7, 0.28, 0.3, 0, 360).arcTo(0.04, 0.7, 0.52, 0.7, 0, -83);
    g[L' '] = Pen(0.20);
    g[L'-'] = Pen(0.42).line({{0.02, 0.46}, {0.40, 0.46}});
    g[L'+'] = Pen(0.48).line({{0, 0.46}, {0.48, 0.46}}).line({{0.24, 0.22}, {0.24, 0.70}});
    g[L'.'] = Pen(0.06).line({{0.03, 0}, {0.03, kDot}});
    g[L','] = Pen(0.10).line({{0.08, 0.07}, {0.02, -0.14}});
    g[L':'] = Pen(0.06).line({{0.03, 0.04}, {0.03, 0.04 + kDot}}).line({{0.03, 0.46}, {0.03, 0.46 + kDot}});
    g[L'/'] = Pen(0.44).line({{0, -0.08}, {0.44, 1.08}});
    g[L'('] = Pen(0.20).arc(0.34, 0.46, 0.34, 0.70, 115, 245);
    g[L')'] = Pen(0.20).arc(-0.14, 0.46, 0.34, 0.70, 65, -65);
    g[L'\''] = Pen(0.02).line({{0.01, 1}, {0.01, 0.76}});
    g[L'"'] = Pen(0.18).line({{0.01, 1}, {0.01, 0.76}}).line({{0.17, 1}, {0.17, 0.76}});
    g[L'\u00B0'] = Pen(0.26).arc(0.13, 0.87, 0.13, 0.13, 90, 450);
    g[L'\u00B2'] = Pen(0.30).arc(0.15, 0.85, 0.14, 0.15, 165, -30).to(0, 0.46).to(0.30, 0.46);
    g[L'\u00B3'] = Pen(0.30).arc(0.15, 0.87, 0.13, 0.13, 145, -90).arcTo(0.15, 0.60, 0.15, 0.14, 90, -145);
    for (const wchar_t micro : {L'\u00B5', L'\u03BC'})
        g[micro] = Pen(0.48).add(g[L'u']).line({{0, kSmall}, {0, -0.26}});
}

Glyphs drawAll()
{
    Glyphs glyphs;
    addCapitals(glyphs);
    addSmallLetters(glyphs);
    addDigitsAndSigns(glyphs);
    return glyphs;
}

} // namespace

const StrokeFont::Glyph& StrokeFont::glyph(wchar_t letter)
{
    static const Glyphs glyphs = drawAll();
    static const Glyph unknown = Pen(0.4).line({{0, 0}, {0.4, 0}, {0.4, kSmall}, {0, kSmall}, {0, 0}});
    const auto found = glyphs.find(letter);
    return found != glyphs.end() ? found->second : unknown;
}

double StrokeFont::width(const std::wstring& text)
{
    double end = 0, right = 0;
    for (const wchar_t letter : text) {
        right = end + glyph(letter).width;
        end += glyph(letter).advance;
    }
    return right;
}

std::vector<StrokeFont::Polyline> StrokeFont::lines(const std::wstring& text)
{
    std::vector<Polyline> all;
    double start = 0;
    for (const wchar_t letter : text) {
        const Glyph& drawn = glyph(letter);
        for (Polyline line : drawn.lines) {
            for (GkPoint2d& point : line)
                point.x += start;
            all.push_back(std::move(line));
        }
        start += drawn.advance;
    }
    return all;
}

} // namespace Vs::Scene
