#pragma once

#include "Server/Geometry/GkMatrix3d.h"

/// An axis-aligned box in millimetres; empty until something is added.
class BBox
{
public:
    constexpr BBox() = default;
    constexpr BBox(const GkPoint3d& low, const GkPoint3d& high) : m_low(low), m_high(high), m_empty(false) {}

    [[nodiscard]] bool isEmpty() const { return m_empty; }
    const GkPoint3d& low() const { return m_low; }
    const GkPoint3d& high() const { return m_high; }
    [[nodiscard]] GkPoint3d centre() const { return m_low + (m_high - m_low) * 0.5; }
    /// Length of the diagonal; 0 for an empty box.
    [[nodiscard]] double diagonal() const { return m_empty ? 0.0 : m_low.distanceTo(m_high); }

    void add(const GkPoint3d& p);
    void add(const BBox& other);
    /// The box around this one's eight corners after the transformation; empty stays empty.
    [[nodiscard]] BBox transformed(const GkMatrix3d& matrix) const;

private:
    GkPoint3d m_low, m_high;
    bool m_empty = true;
};
