#pragma once

#include "Server/Geometry/GkPoint2d.h"
#include "Server/Geometry/GkVector3d.h"
#include "Server/Scene/Rendra/GridScale.h"

#include <string>
#include <vector>

namespace Vs::Scene {
class Projection;
}

namespace Rendra {

/// Places the numbers along the axes of the layout grid on the screen: upright, of one size, and so that none
/// covers another. Where there isn't room for all, the rounder ones stay.
class GridNumbers
{
public:
    /// A place in pixels from the lower left corner of the view.
    struct Box
    {
        double left, bottom, right, top;
    };
    struct Label
    {
        std::wstring text;
        Box box;
        double ahead; ///< Distance from the camera along its direction, in millimetres.
        double opacity;
    };
    struct Line
    {
        GkPoint2d from, to; ///< In pixels.
        double ahead, opacity;
    };

    /// `pixel` is how many pixels make a logical one. The projection must outlive this.
    GridNumbers(const Vs::Scene::Projection& projection, double pixel);

    /// Numbers along `axis`, of unit length, through the origin, `major` millimetres apart. The grid is a
    /// disc of radius `reach` around a point that is at `middle` along the axis and at `beside` across it.
    void addAxis(const GkVector3d& axis, double middle, double beside, double reach, double major,
                 const GridScale& scale);

    const std::vector<Label>& labels() const { return m_labels; }
    /// The strokes of all of them.
    std::vector<Line> lines() const;

private:
    bool place(const GkVector3d& axis, double along, double major, const std::wstring& text, double opacity);

    const Vs::Scene::Projection& m_projection;
    double m_pixel;
    std::vector<Label> m_labels;
};

} // namespace Rendra
