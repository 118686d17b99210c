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

    bool makeFaces(unsigned kind, Vs::Status& status);
    const Program& faceProgram(unsigned kind);
    bool findOcclusion(const Frame& frame, double radius);
    const Program& useFaces(const Frame& frame, bool occluded);
    void drawLines(const Frame& frame, const LineLook& look, bool withOutlines);
    void drawEdges(const Frame& frame, const LineLook& look);
    void drawOutlines(const Frame& frame, const LineLook& look);

    /// What a program of faces can do; all together are the kinds of programs. All but the plain one, and the
    /// outlines, are made at the first need; most sessions never show them.
    enum FaceKind : unsigned {
        kPlainFaces = 0,
        kRealisticFaces = 1,
        kShadowedFaces = 2,
        kOccludedFaces = 4,
        kQuickFaces = 8, ///< Lit at their corners alone. Goes with none of the others.
        kFaceKinds = 9,
    };

    Program m_faces[kFaceKinds];
    Program m_edges, m_outlines;
    bool m_triedFaces[kFaceKinds] = {}, m_triedOutlines = false;
    Occlusion m_occlusion;
    ObjectShadow m_shadows;
};

} // namespace Rendra
