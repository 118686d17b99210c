#pragma once

#include "Server/Scene/Rendra/ContactShadow.h"
#include "Server/Scene/Rendra/Frame.h"

namespace Rendra {

/// Draws the ground below the bodies, with their shadow, fading away into the distance. It comes before the
/// bodies: who looks from above sees them all before it, and who looks from below sees no ground.
class GroundPainter : public Pass
{
public:
    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;

private:
    void drawPlane(const Frame& frame, const Ground& ground, bool shadowed);

    Program m_program;
    ContactShadow m_contact;
    GLuint m_noArray = 0;
};

} // namespace Rendra
