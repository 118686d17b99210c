#pragma once

#include <gp_GTrsf.hxx>

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// A node of a VRML text that the kernel reads as something else: a transformation that scales along its axes
/// differently, whose scale it would drop without a word, or an inlined file, of which it would do the same.
struct VrmlMark
{
    gp_GTrsf motion;               ///< With lengths as they stand in the text.
    std::vector<std::string> urls; ///< Of an inlined file; empty for a transformation.
};

struct VrmlMarks
{
    /// What the kernel is to read instead: transformations, each with a mark in place of its scale. Empty if
    /// there is none.
    std::string text;
    std::vector<VrmlMark> marks; ///< In the order of the text.

    /// The one that was marked with the scale which the kernel has read; null if that is no mark.
    const VrmlMark* marked(double scale) const;
};

/// Throws Unreadable if groups lie deeper in groups than can be read (checkLimits).
VrmlMarks vrmlMarks(std::string_view text);

/// The same motion as one that can be combined with such; the kernel's own conversion keeps a scale beside
/// the matrix, where it is lost then.
gp_GTrsf affine(const gp_Trsf& motion);

} // namespace Vs::Translate
