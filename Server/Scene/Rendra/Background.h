#pragma once

#include "Server/Scene/Rendra/Frame.h"

namespace Rendra {

/// What is behind everything: the sky, or a plain light surface.
class Background
{
public:
    bool make(Vs::Status& status);
    /// Fills the tile, whatever was there.
    void draw(const RenderTarget& target, const Area& tile);
    void release();

private:
    Program m_program;
    GLuint m_noArray = 0; ///< A vertex array without attributes.
};

} // namespace Rendra
