#pragma once

#include "Server/Geometry/BBox.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

/// A GkMatrix3d for objects of which there are a million: a translation takes 32 bytes instead of 128, and
/// copies of any other share it. Returns exactly the matrix it was made from.
class GkPlacement
{
public:
    /// The identity.
    GkPlacement() = default;
    GkPlacement(const GkMatrix3d& matrix);

    operator GkMatrix3d() const { return matrix(); }
    [[nodiscard]] GkMatrix3d matrix() const;
    friend GkMatrix3d operator*(const GkPlacement& a, const GkMatrix3d& b) { return a.matrix() * b; }
    friend GkPoint3d operator*(const GkPlacement& a, const GkPoint3d& p) { return a.matrix() * p; }
    friend GkVector3d operator*(const GkPlacement& a, const GkVector3d& v) { return a.matrix() * v; }
    /// BBox::transformed by it.
    [[nodiscard]] BBox placed(const BBox& box) const;
    /// Whether all numbers are equal.
    friend bool operator==(const GkPlacement& a, const GkPlacement& b);

private:
    struct Shared : boost::intrusive_ref_counter<Shared>
    {
        explicit Shared(const GkMatrix3d& matrix) : matrix(matrix) {}
        const GkMatrix3d matrix;
    };

    GkVector3d m_shift;
    boost::intrusive_ptr<const Shared> m_turned; ///< Null for a translation.
};
