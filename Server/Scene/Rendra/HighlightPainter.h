#pragma once

#include "Server/Scene/Rendra/LineStrips.h"

#include <vector>

namespace Rendra {

/// Makes bodies that are pointed at or selected stand out, beyond the tint that the other passes give them,
/// as RenderTarget::selectionEffect says. The cost depends on what is highlighted, not on what is shown.
class HighlightPainter : public Pass
{
public:
    bool make(Vs::Status&) override { return true; }
    void draw(const Frame& frame) override;
    void release() override;

private:
    bool makeOutline();
    void makeMask(int width, int height);
    void gatherCorners(const Area& touched, int around);
    void drawOutline(const Frame& frame);
    void drawLines(const Frame& frame);
    void gatherBox(const Vs::BodyMesh& mesh, const Instance& instance, const float (&colour)[4]);
    void gatherEdges(const Vs::BodyMesh& mesh, const Instance& instance, const float (&colour)[4]);

    // All created on first use.
    Program m_mask, m_outline;
    bool m_triedOutline = false;
    GLuint m_texture = 0, m_depths = 0, m_framebuffer = 0;
    int m_width = 0, m_height = 0;
    std::vector<uint8_t> m_blocks; ///< For the mask: what is in each block, and how much of it is filled.
    std::vector<float> m_corners;  ///< Of the blocks in which outlines may run.
    VertexStream m_squares;
    LineStrips m_strips;
    std::vector<LineStrips::Vertex> m_vertices; ///< Relative to the draw list's origin.
};

} // namespace Rendra
