#pragma once

#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/VertexStream.h"

#include <vector>

namespace Rendra {

/// Draws a few lines of any width as strips of pixels, whose coverage is computed: numbers, marks and helpers
/// look the same with every driver and at every density of the screen. Depths are clamped, since such lines
/// may be beyond the bodies, which alone determine the clip planes.
class LineStrips
{
public:
    /// Two of them make a line.
    struct Vertex
    {
        float position[3];
        float colour[4]; ///< As on the screen.
    };

    /// Uploads the lines. `toClip` goes from their coordinates to the clip coordinates of the frame's part,
    /// row by row. False if the driver can't; the first call creates the program.
    [[nodiscard]] bool begin(const Frame& frame, const double (&toClip)[4][4],
                             const std::vector<Vertex>& vertices);
    /// Draws the lines of the last `begin`, `width` pixels of the framebuffer wide, with their colours
    /// multiplied by `tint`, and the current depth state.
    void draw(float width, const float (&tint)[4] = {1, 1, 1, 1});
    void release();

private:
    Program m_program;
    VertexStream m_stream;
    GLsizei m_count = 0;
    bool m_tried = false;
};

} // namespace Rendra
