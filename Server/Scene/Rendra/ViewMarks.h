#pragma once

#include "Server/Scene/Rendra/LineStrips.h"

#include <string>
#include <vector>

namespace Rendra {

/// Draws what tells directions and lengths in the corners of a view: a cross of the model's axes at the lower
/// left, and a scale bar at the lower right. Nothing hides them, and they can't be picked.
class ViewMarks : public Pass
{
public:
    /// Its programs are created when a mark is shown first.
    bool make(Vs::Status&) override { return true; }
    void draw(const Frame& frame) override;
    void release() override { m_strips.release(); }

private:
    using Colour = float[3];
    void addAxes(const Frame& frame);
    void addScaleBar(const Frame& frame);
    static void addLine(const GkPoint2d& from, const GkPoint2d& to, const Colour& colour,
                        std::vector<LineStrips::Vertex>& lines);
    void addText(const std::wstring& text, const GkPoint2d& middle, const Colour& colour);
    void drawAll(const Frame& frame, const std::vector<LineStrips::Vertex>& lines, float width);

    LineStrips m_strips;
    /// In pixels of the framebuffer from the fragment's lower left corner.
    std::vector<LineStrips::Vertex> m_axes, m_texts;
    double m_pixel = 1; ///< Of the framebuffer, for a logical one.
    float m_line[3];    ///< The colour of letters and the bar.
};

} // namespace Rendra
