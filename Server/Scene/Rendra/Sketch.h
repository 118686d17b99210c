#pragma once

#include "Server/Scene/Rendra/Frame.h"

namespace Rendra {

/// Turns the picture of the model into a drawing: pastel washes, or strokes of a pencil. Each place is
/// computed from the picture there and from the shapes around it, and strokes and paper are fixed to the
/// picture, so that a still view is still and tiles fit together.
class Sketch : public Pass
{
public:
    bool make(Vs::Status&) override { return true; }
    void draw(const Frame& frame) override;
    void release() override;
    void collect() override;

private:
    bool makePrograms();
    bool drawShapes(const Frame& frame);
    bool copyPicture(const Frame& frame);

    // All created on first use.
    Program m_shape, m_pastel, m_graphite;
    Layer m_shapes, m_picture;
    GLuint m_noArray = 0;
    bool m_tried = false;
};

} // namespace Rendra
