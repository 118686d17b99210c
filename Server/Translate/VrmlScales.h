#pragma once

#include <gp_GTrsf.hxx>

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// The transformations of a VRML text that scale along their axes differently, of which the kernel drops the
/// scale without a word.
struct VrmlScales
{
    /// What the kernel is to read instead: each of these has a mark in place of its scale. Empty if there is
    /// none.
    std::string text;
    /// In the order of the text, with lengths as they stand there.
    std::vector<gp_GTrsf> motions;

    /// The one that was marked with the scale which the kernel has read; null if that is no mark.
    const gp_GTrsf* marked(double scale) const;
};

/// Throws Unreadable if groups lie deeper in groups than can be read (checkLimits).
VrmlScales vrmlScales(std::string_view text);

/// The same motion as one that can be combined with such; the kernel's own conversion keeps a scale beside
/// the matrix, where it is lost then.
gp_GTrsf affine(const gp_Trsf& motion);

} // namespace Vs::Translate
