#pragma once

#include "Server/Scene/Rendra/Frame.h"

#include <vector>

namespace Rendra {

/// How far one can see in the picture that is being drawn, of each few pixels the farthest: what begins
/// behind that is hidden. Costs a few milliseconds, for which the driver must end what it was told to draw.
class FarthestDepths
{
public:
    /// In pixels of the frame's part, and depths from 0 to 1.
    struct Box
    {
        float left, bottom, right, top, nearest;
    };

    /// Takes over the depths of the frame's part of the picture. False if the driver can't give them.
    [[nodiscard]] bool read(const Frame& frame);
    /// Whether the picture is nearer than the box wherever that reaches; what isn't in the picture is hidden,
    /// too.
    [[nodiscard]] bool hide(const Box& box) const;
    void release();

private:
    /// Each with tiles twice as long as those of the one before.
    struct Level
    {
        int width = 0, height = 0;
        std::vector<float> depths;
    };

    bool readPixels(const Frame& frame);
    bool readSamples(const Frame& frame);
    bool makeSamples(int width, int height, int samples, GLenum format);
    void makeLevels();

    std::vector<Level> m_levels;
    std::vector<float> m_rows;
    int m_width = 0, m_height = 0; ///< Of the part.

    // For pictures with several samples per pixel; created on first use.
    Program m_program;
    bool m_tried = false;
    GLuint m_noArray = 0;
    GLuint m_framebuffers[2] = {},
           m_textures[2] = {}; ///< A copy of the depths, and the farthest of its tiles.
    int m_copyWidth = 0, m_copyHeight = 0, m_samples = 0;
    GLenum m_format = 0;
};

} // namespace Rendra
