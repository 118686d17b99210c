#pragma once

#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/VertexStream.h"

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
    struct Vertex
    {
        float position[3]; ///< Relative to the draw list's origin.
        float colour[3];
    };

    bool makePrograms();
    void drawFaces(const Frame& frame);
    void gather(const PartlyLit& lit, Graphics::Part part, const HighlightColours& colours);
    void drawGathered(const Frame& frame, GLenum kind);

    // All created on first use.
    Program m_faces, m_marks;
    bool m_tried = false;
    VertexStream m_stream;
    std::vector<Vertex> m_vertices;
};

} // namespace Rendra
