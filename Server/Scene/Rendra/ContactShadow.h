#pragma once

#include "Server/Scene/Rendra/Ground.h"
#include "Server/Scene/Rendra/Layer.h"
#include "Server/Scene/Rendra/Program.h"

namespace Rendra {

struct Frame;

/// The shadow on the ground of a light that comes evenly from the whole sky. It does not depend on where it
/// is seen from, and so is found once and kept as long as no body comes, goes or moves.
class ContactShadow
{
public:
    /// What is kept of one scene.
    struct Kept
    {
        Layer darkness; ///< From 0 (open sky) to 1, over the rectangle below.
        double left = 0, front = 0, width = 0, depth = 0; ///< As in Ground.
        uint64_t shapes = 0;                              ///< Of which revision; 0 for none.
        GkVector3d up;
    };

    /// Brings the shadow of the frame's scene up to date. Where that costs much and the frame is to be quick,
    /// or the driver cannot do it, returns false: there is no shadow then. Draws into layers of its own.
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
