#pragma once

#include "Server/Scene/Rendra/Ground.h"
#include "Server/Scene/Rendra/Layer.h"
#include "Server/Scene/Rendra/Program.h"

namespace Rendra {

struct Frame;

/// How much of the first lamp's light soft shadows leave on the ground. It doesn't depend on the viewpoint,
/// so it is kept as long as the shadows are.
class LampOnGround
{
public:
    /// What is cached for one scene.
    struct Kept
    {
        Layer light; ///< How much of each colour reaches the ground, over the rectangle below.
        double left = 0, front = 0, width = 0, depth = 0; ///< As in Ground.
        uint64_t shapes = 0;                              ///< Its revision; 0 for none.
        GkVector3d up, toLamp;
    };

    /// Updates the light of the frame's scene, whose shadows must have been found. Returns false if the lamp
    /// doesn't shine from above, or if the driver can't do it. Draws into its own layers.
    bool find(const Frame& frame, const Ground& ground);

    void release();

private:
    Program m_find, m_blur;
    Layer m_raw;
    GLuint m_noArray = 0;
    bool m_tried = false;
};

} // namespace Rendra
