#pragma once

#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/OutlineStore.h"
#include "Server/Scene/Rendra/VertexStream.h"

#include <vector>

namespace Rendra {

/// Draws the edges of bodies, and the outlines of their round faces, as lines of any width.
class EdgePainter
{
public:
    struct Look
    {
        float colour[4];
        float dashPixels;     ///< In pixels of the picture; 0 for a line without gaps.
        bool ofGlass = false; ///< Only those of transparent bodies.
        bool onFaces = false; ///< Outlines that are barely visible may be left out.
    };

    bool make(Vs::Status& status);
    /// Draws into the bound framebuffer, with the current blending and depth state.
    void draw(const Frame& frame, const Look& look, bool withOutlines);
    /// Whether all faces in view end in lines, if outlines are drawn.
    static bool linesAll(const Frame& frame);
    void collect() { m_outlineStore.collect(); }
    void release();

private:
    void drawEdges(const Frame& frame, const Look& look);
    void drawOutlines(const Frame& frame, const Look& look);
    void setLine(const Program& program, const Frame& frame, const Look& look);

    const Program& edgeProgram(const Frame& frame, const Look& look);
    static bool isDrawn(const Frame& frame, size_t index, const Look& look);

    Program m_edges, m_plain, m_outlines;
    bool m_triedPlain = false, m_triedOutlines = false;
    VertexStream m_stream;
    OutlineStore m_outlineStore;
    std::vector<OutlineStore::Vertex> m_vertices;
};

} // namespace Rendra
