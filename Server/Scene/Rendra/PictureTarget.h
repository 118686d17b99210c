#pragma once

#include "Server/Scene/Rendra/Program.h"

#include <cstdint>

namespace Rendra {

/// A framebuffer to draw a tile of a picture into, and the readback from there to memory.
class PictureTarget
{
public:
    /// `scale` is 1, or 2 for a framebuffer of twice the width and height. Creates what is missing; false if
    /// the driver can't.
    [[nodiscard]] bool prepare(int width, int height, int scale, int samples);
    uint32_t framebuffer() const { return m_drawn; }

    /// Averages samples and, with a scale of 2, pixels, and writes RGBA rows, the lowest one first, to
    /// `pixels`; `stride` is the length of a row there in pixels.
    void read(int width, int height, uint8_t* pixels, int stride);

    void release();
    /// The number of samples that framebuffers can have, at most `wanted`.
    static int samplesOffered(int wanted);

private:
    /// With several samples the colours are a texture, else a renderbuffer.
    struct Surface
    {
        uint32_t framebuffer = 0, colour = 0, depth = 0, texture = 0;
        [[nodiscard]] bool make(int width, int height, int samples, bool withDepth);
        void release();
    };
    [[nodiscard]] bool makeAll();
    void average(int width, int height);

    Surface m_target, m_resolved, m_small;
    Program m_average; ///< For as many samples as the target has.
    uint32_t m_noArray = 0;
    uint32_t m_drawn = 0;
    int m_width = 0, m_height = 0, m_scale = 0, m_samples = 0;
};

} // namespace Rendra
