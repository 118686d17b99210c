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

    /// Whether the bodies throw shadows on each other in this frame (see ObjectShadow, whose uniforms can be
    /// set then).
    bool findShadows(const Frame& frame) { return m_shadows.find(frame); }
    /// Draws nothing but the lit faces, into what is bound and for the view and part of the frame: for a
    /// mirror. Nothing in a style without faces.
    void drawFaces(const Frame& frame);

private:
    struct LineLook
    {
        float colour[4];
        float dashPixels; ///< Of the picture; 0 for a line without gaps.
    };

    bool makeFaces(bool realistic, bool shadowed, Vs::Status& status);
    const Program& faceProgram(const Frame& frame, bool shadowed);
    bool findOcclusion(const Frame& frame, double radius);
    void setLight(const Program& program, const Frame& frame, bool occluded, bool shadowed);
    void drawLines(const Frame& frame, const LineLook& look, bool withOutlines);
    void drawEdges(const Frame& frame, const LineLook& look);
    void drawOutlines(const Frame& frame, const LineLook& look);

    /// By whether they are realistic, and whether there are shadows. All but the first, and the outlines, are
    /// made at the first need; most sessions never show them.
    Program m_faces[2][2];
    Program m_edges, m_outlines;
    bool m_triedFaces[2][2] = {}, m_triedOutlines = false;
    Occlusion m_occlusion;
    ObjectShadow m_shadows;
};

} // namespace Rendra
