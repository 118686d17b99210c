#pragma once

#include "Server/Scene/Rendra/LineStrips.h"

#include <vector>

namespace Rendra {

/// Draws the pointed-at or selected faces, edges and vertices over the bodies, as
/// RenderTarget::selectionEffect says. The cost depends on what is highlighted, not on what is shown.
class PartPainter : public Pass
{
public:
    bool make(Vs::Status&) override { return true; }
    void draw(const Frame& frame) override;
    void release() override;

private:
    bool makePrograms();
    void drawFaces(const Frame& frame);
    void gather(const Frame& frame, const PartlyLit& lit, Graphics::Part part,
                const HighlightColours& colours);
    void drawGathered(const Frame& frame, Graphics::Part part);

    // All created on first use.
    Program m_faces, m_marks;
    bool m_tried = false;
    VertexStream m_stream;
    LineStrips m_strips;
    std::vector<LineStrips::Vertex> m_vertices; ///< Relative to the draw list's origin.
};

} // namespace Rendra
