#pragma once

#include "Server/Scene/Rendra/BodyPainter.h"
#include "Server/Scene/Rendra/ContactShadow.h"
#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/LampOnGround.h"

namespace Rendra {

/// Draws the ground below the bodies, with their shadow and reflection, fading out into the distance. It is
/// drawn before the bodies: seen from above they are all in front of it, and from below the ground isn't
/// visible.
class GroundPainter : public Pass
{
public:
    /// The bodies' painter draws their mirror images; it must outlive this.
    explicit GroundPainter(BodyPainter& bodies) : m_bodies(bodies) {}

    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;
    void collect() override;

private:
    /// What is seen on the ground.
    struct Look
    {
        bool plain = false;     ///< The ground itself, not only what is on it.
        bool shadowed = false;  ///< By the sky,
        bool lit = false;       ///< by a lamp,
        bool litSoftly = false; ///< or by one whose light is known all over the ground.
        bool mirrored = false;
        bool wires = false; ///< It is seen through the bodies.
    };

    bool makeProgram();
    bool drawMirror(const Frame& frame, const Ground& ground);
    void drawPlane(const Frame& frame, const Ground& ground, const Look& look);
    void setMirror(const Frame& frame, const Ground& ground);

    BodyPainter& m_bodies;
    Program m_program;
    ContactShadow m_contact;
    LampOnGround m_lamp;
    Layer m_mirror;
    GLuint m_noArray = 0;
    bool m_tried = false;
};

} // namespace Rendra
