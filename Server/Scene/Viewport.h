#pragma once

#include "Server/Base/StrongRef.h"
#include "Server/Scene/Segment.h"

namespace Vs::Scene {

/// The part of a canvas into which a view or a fragment draws.
class Viewport : public Implements<Viewport, SharedObject>
{
public:
    static StrongRef<Viewport> make(Segment* segment);

    Segment* segment() const { return m_segment; }

    /// Left, bottom, width and height as fractions of the canvas, from 0 to 1; a new one fills the canvas.
    void placement(double left, double bottom, double width, double height);
    double left() const { return m_left; }
    double bottom() const { return m_bottom; }
    double width() const { return m_width; }
    double height() const { return m_height; }

private:
    explicit Viewport(Segment* segment) : m_segment(segment) {}

    Segment* m_segment;
    double m_left = 0, m_bottom = 0, m_width = 1, m_height = 1;
};

} // namespace Vs::Scene
