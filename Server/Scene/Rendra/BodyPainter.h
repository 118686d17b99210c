#pragma once

#include "Server/Scene/Rendra/EdgePainter.h"
#include "Server/Scene/Rendra/EnvironmentMirror.h"
#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/GlassLayers.h"
#include "Server/Scene/Rendra/HiddenBodies.h"
#include "Server/Scene/Rendra/Occlusion.h"

namespace Rendra {

/// Draws the bodies of a fragment in its visual style: faces, edges, and finally transparent faces.
class BodyPainter : public Pass
{
public:
    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;
    void collect() override { m_edges.collect(); }

    /// Whether the bodies cast shadows on each other in this frame (see ObjectShadow, whose uniforms can be
    /// set then).
    bool findShadows(const Frame& frame) { return m_shadows.find(frame); }
    /// Draws only the lit faces, for a mirror. Nothing in a style without faces.
    void drawFaces(const Frame& frame);
    /// Draws what is transparent, which `draw` left out; and frees what only a large picture needed for it.
    void drawGlass(const Frame& frame);
    void collectGlass() { m_glass.releaseIfLarge(); }

private:
    bool makeFaces(unsigned kind, Vs::Status& status);
    const Program& faceProgram(unsigned kind);
    /// The programs for bodies without a material and for others; null where none of them is in view.
    struct FacePrograms
    {
        const Program* plain = nullptr;
        const Program* finished = nullptr;
    };
    /// Which faces are drawn by a program: opaque ones, or transparent ones, of which some
    /// are seen through others.
    enum class Kind { Opaque, Glass, FaintGlass };
    FacePrograms useFaces(const Frame& frame, bool occluded, Kind which = Kind::Opaque);
    static void drawFaces(const Frame& frame, const FacePrograms& programs, Frame::Faces which,
                          bool opaqueOnly = false);
    static void drawOpaqueFaces(const Frame& frame, const FacePrograms& programs);
    void drawSolids(const Frame& frame, bool occluded, bool depthOnly);
    void drawGlass(const Frame& frame, bool lined);
    void drawUnsorted(const Frame& frame);
    bool findOcclusion(const Frame& frame);
    FacePrograms useGlass(const Frame& frame, Kind which);
    const Program& useFaceProgram(const Frame& frame, unsigned kind);

    /// The features of a face program; their combinations are the kinds of programs. All but the plain one,
    /// and the outlines, are created on first use; most sessions never show them.
    enum FaceKind : unsigned {
        kPlainFaces = 0,
        kRealisticFaces = 1,
        kShadowedFaces = 2,
        kOccludedFaces = 4,
        kQuickFaces = 8,     ///< Lit only at the vertices. Not combined with any of the above.
        kGlassFaces = 16,    ///< Transparent, into GlassLayers.
        kSoftFaces = 32,     ///< What is occluded has soft shadows as well.
        kFinishedFaces = 64, ///< With materials.
        kFaceKinds = 128,
    };

    Program m_faces[kFaceKinds];
    EdgePainter m_edges;
    bool m_triedFaces[kFaceKinds] = {};
    Occlusion m_occlusion;
    ObjectShadow m_shadows;
    EnvironmentMirror m_mirror;
    GlassLayers m_glass;
    HiddenBodies m_hidden;
};

} // namespace Rendra
