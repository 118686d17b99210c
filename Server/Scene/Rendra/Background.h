#pragma once

#include "Server/Scene/Rendra/Frame.h"

namespace Rendra {

/// What is behind everything: the environment as the camera sees it, or a plain colour.
class Background
{
public:
    bool make(Vs::Status& status);
    /// Fills the tile, overwriting its content. A parallel projection sees the environment through a lens as
    /// wide as that of a new perspective: it has no point from which rays diverge, but a sky of one colour
    /// would not distinguish up from down. `quick` is as in Frame.
    void draw(const RenderTarget& target, const Area& tile, const Vs::Scene::Projection& projection,
              const GkVector3d& up, const Vs::Scene::Environment& environment, const EnvironmentLight& light,
              bool quick);
    void release();

private:
    void prepareTable(const Vs::Scene::Environment& environment);
    static bool make(Program& program, const char* name, const char* kind, Vs::Status& status);
    const Program& programFor(const Vs::Scene::Environment& environment, bool quick);

    Program m_program, m_quick, m_glowing, m_panorama;
    bool m_triedQuick = false, m_triedGlowing = false, m_triedPanorama = false;
    /// The colour at each elevation, without the glow: a lookup takes a fraction of computing it. Or the
    /// environment's panorama.
    GLuint m_table = 0;
    const Vs::Scene::Environment* m_inTable = nullptr;
    GLuint m_noArray = 0; ///< A vertex array without attributes.
};

} // namespace Rendra
