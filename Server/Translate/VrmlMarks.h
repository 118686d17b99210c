#pragma once

#include <gp_GTrsf.hxx>

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// A node of a VRML text that the kernel is given as something else: a transformation with a non-uniform
/// scale, which the kernel would silently drop, or an inlined file, which it would drop as well.
struct VrmlMark
{
    gp_GTrsf motion;               ///< With lengths as written in the text.
    std::vector<std::string> urls; ///< For an inlined file; empty for a transformation.
};

struct VrmlMarks
{
    /// What the kernel reads instead: transformations, each with a mark in place of its scale. Empty if there
    /// is none.
    std::string text;
    std::vector<VrmlMark> marks; ///< In the order of the text.

    /// The one that was marked with the scale that the kernel has read; null if that isn't a mark.
    const VrmlMark* marked(double scale) const;
};

/// Throws Unreadable if groups are nested deeper than can be read (checkLimits).
VrmlMarks vrmlMarks(std::string_view text);

/// The same motion in a form that can be combined with such; the kernel's own conversion keeps a scale
/// separate from the matrix, where it is then lost.
gp_GTrsf affine(const gp_Trsf& motion);

} // namespace Vs::Translate
