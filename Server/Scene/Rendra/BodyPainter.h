#pragma once

#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/Occlusion.h"

namespace Rendra {

/// Draws the bodies of a fragment in its visual style: faces, edges, what is seen through.
class BodyPainter : public Pass
{
public:
    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;

private:
    struct LineLook
    {
        float colour[4];
        float dashPixels; ///< Of the picture; 0 for a line without gaps.
    };

    const Program& faceProgram(const Frame& frame);
    bool findOcclusion(const Frame& frame, double radius);
    void setLight(const Program& program, const Frame& frame, bool occluded);
    void drawLines(const Frame& frame, const LineLook& look, bool withOutlines);
    void drawEdges(const Frame& frame, const LineLook& look);
    void drawOutlines(const Frame& frame, const LineLook& look);

    Program m_faces, m_edges;
    /// Made at the first need; most sessions never show them.
    Program m_realistic, m_outlines;
    bool m_triedRealistic = false, m_triedOutlines = false;
    Occlusion m_occlusion;
};

} // namespace Rendra
