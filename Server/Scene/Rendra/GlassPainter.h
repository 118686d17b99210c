#pragma once

#include "Server/Scene/Rendra/BodyPainter.h"

namespace Rendra {

/// Draws the transparent faces of bodies, over everything seen through them, with the edges that lie on them.
class GlassPainter : public Pass
{
public:
    /// The bodies' painter draws them; it must outlive this.
    explicit GlassPainter(BodyPainter& bodies) : m_bodies(bodies) {}

    bool make(Vs::Status&) override { return true; }
    void draw(const Frame& frame) override { m_bodies.drawGlass(frame); }
    void release() override {}
    void collect() override { m_bodies.collectGlass(); }

private:
    BodyPainter& m_bodies;
};

} // namespace Rendra
