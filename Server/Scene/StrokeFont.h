#pragma once

#include "Server/Geometry/GkPoint2d.h"

#include <string>
#include <vector>

namespace Vs::Scene {

/// Letters made of strokes, for short texts in the scene: the numbers of a grid, the names on a cube. They
/// need no font file, can be drawn in every direction and at every size, and look best with lines of 1.5
/// pixels.
///
/// Lengths are in heights of a capital letter: capitals stand on 0 and reach 1, small letters reach 0.66, and
/// those with a tail go down to -0.26. Digits are all equally wide.
class StrokeFont
{
public:
    using Polyline = std::vector<GkPoint2d>;
    struct Glyph
    {
        double width = 0;   ///< Of the drawing, which begins at 0.
        double advance = 0; ///< From here to the next letter.
        std::vector<Polyline> lines;
    };

    /// Has A to Z and a to z, the German letters, digits, blank, - + . , : / ( ) ' " and the symbols of units
    /// (degree, micro, square and cube); a small box replaces any other character.
    [[nodiscard]] static const Glyph& glyph(wchar_t letter);

    /// The length of the text, from the left end of its first letter to the right end of its last.
    [[nodiscard]] static double width(const std::wstring& text);
    /// The lines of a text whose first letter begins at 0.
    [[nodiscard]] static std::vector<Polyline> lines(const std::wstring& text);
};

} // namespace Vs::Scene
