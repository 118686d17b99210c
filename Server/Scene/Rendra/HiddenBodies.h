#pragma once

#include "Server/Scene/Rendra/FarthestDepths.h"

namespace Rendra {

/// Leaves out bodies that others hide, which costs a look at the depths and saves most of a large assembly.
/// Those seen in the last picture are drawn first, and then whatever the depths of these don't hide: so
/// nothing that is seen is ever missing, however the view or the scene has changed.
///
///     if (hidden.begin(frame)) {
///         ...draw opaque faces
///         if (hidden.findMore(frame))
///             ...draw opaque faces
///         hidden.finish(frame);
///     }
///
/// Each step decides which instances are drawn by Frame::drawFaces; those that are hidden are left out until
/// the next picture.
class HiddenBodies
{
public:
    /// False if nothing would be won.
    [[nodiscard]] bool begin(const Frame& frame);
    [[nodiscard]] bool findMore(const Frame& frame);
    void finish(const Frame& frame) const;
    void release() { m_depths.release(); }

private:
    FarthestDepths m_depths;
};

} // namespace Rendra
