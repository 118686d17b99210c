#pragma once

#include "Server/Geometry/GkVector3d.h"

#include <cstdint>

namespace Vs::Scene {

/// The numbers are those of the view commands and of the user's options.
enum EVisualStyle {
    kShaded = 0,
    kShadedWithHiddenEdges = 1,
    kShadedWithVisibleEdges = 2,
    kWireframe = 3,
    kWireframeWithHiddenEdges = 4,
    kWireframeWithVisibleEdges = 5,
    kRealistic = 6,
    kHelpersOnly = 9, ///< Reticles and markers, no bodies.
};

/// How one fragment is drawn. A new one takes the user's current options.
class RenderParams
{
public:
    RenderParams();

    /// Perpendicular to the ground, away from it, of unit length: the model's up direction.
    const GkVector3d& groundPlaneOrientation() const { return m_groundPlaneOrientation; }
    void groundPlaneOrientation(const GkVector3d& up);
    bool groundPlaneEnabled() const { return m_groundPlane; }
    void groundPlaneEnabled(bool enabled) { set(m_groundPlane, enabled); }
    bool groundShadowEnabled() const { return m_groundShadow; }
    void groundShadowEnabled(bool enabled) { set(m_groundShadow, enabled); }
    bool groundReflectionEnabled() const { return m_groundReflection; }
    void groundReflectionEnabled(bool enabled) { set(m_groundReflection, enabled); }
    bool ambientOcclusionEnabled() const { return m_ambientOcclusion; }
    void ambientOcclusionEnabled(bool enabled) { set(m_ambientOcclusion, enabled); }
    bool colorCyclingEnabled() const { return m_colorCycling; }
    void colorCyclingEnabled(bool enabled) { set(m_colorCycling, enabled); }
    int nprEffect() const { return m_nprEffect; }
    void nprEffect(int effect) { set(m_nprEffect, effect); }
    /// An EVisualStyle.
    int visualStyle() const { return m_visualStyle; }
    void visualStyle(int style) { set(m_visualStyle, style); }
    int objectShadowType() const { return m_objectShadowType; }
    void objectShadowType(int type)
    {
        set(m_objectShadowType, type);
        set(m_shadowsAreChosen, true);
    }
    /// The shadows that are drawn: until somebody has chosen, realistic bodies have soft ones, and others
    /// none.
    int drawnShadowType() const
    {
        return m_shadowsAreChosen || m_visualStyle != kRealistic ? m_objectShadowType : kSoftest;
    }

    /// Grows with every change.
    uint64_t revision() const { return m_revision; }

private:
    template <class T>
    void set(T& field, T value)
    {
        if (field != value) {
            field = value;
            ++m_revision;
        }
    }

    GkVector3d m_groundPlaneOrientation{0, 0, 1};
    bool m_groundPlane, m_groundShadow, m_groundReflection, m_ambientOcclusion;
    static constexpr int kSoftest = 3;

    bool m_colorCycling = false, m_shadowsAreChosen;
    int m_nprEffect, m_visualStyle, m_objectShadowType;
    uint64_t m_revision = 1;
};

} // namespace Vs::Scene
