#pragma once

#include "Server/Scene/Rendra/Ground.h"
#include "Server/Scene/Rendra/Layer.h"
#include "Server/Scene/Rendra/Program.h"

namespace Rendra {

struct Frame;

/// The shadow on the ground under light that comes evenly from the whole sky. It doesn't depend on the
/// viewpoint, so it is computed once and kept until a body is added, removed or moved.
class ContactShadow
{
public:
    /// What is cached for one scene.
    struct Kept
    {
        Layer darkness; ///< From 0 (open sky) to 1, over the rectangle below.
        double left = 0, front = 0, width = 0, depth = 0; ///< As in Ground.
        uint64_t shapes = 0;                              ///< Its revision; 0 for none.
        GkVector3d up;
    };

    /// Updates the shadow of the frame's scene. Returns false, without a shadow, if that is expensive and the
    /// frame must be quick, or if the driver can't do it. Draws into its own layers.
    bool find(const Frame& frame, const Ground& ground);

    void release();

private:
    bool makePrograms();
    struct Lengths
    {
        double reach, height;
    };

    void findDarkness(const Frame& frame, const Ground& ground, const Kept& kept, const Lengths& pixels,
                      bool withGlass);
    void drawColumns(const Frame& frame, const Ground& ground, const Kept& kept, bool withGlass);

    Program m_depthOnly, m_find, m_blur;
    Layer m_lowest, m_highest, m_raw, m_twice;
    GLuint m_noArray = 0;
    bool m_tried = false, m_works = false;
};

} // namespace Rendra
