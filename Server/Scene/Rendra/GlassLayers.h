#pragma once

#include "Server/Scene/Rendra/Frame.h"

namespace Rendra {

/// What transparent faces are gathered in before they come into the picture, so that it doesn't matter in
/// which order they are drawn: the foremost at each pixel, and the sum of all. One sample of each pixel is
/// taken: several would cost more than all that is opaque, and what is seen through has faint edges.
///
///     if (layers.begin(frame)) {
///         for (const auto step : {Step::Sum, Step::Foremost})
///             layers.take(step), ...draw faces with a program that has GLASS defined
///         layers.beginLines(), ...draw lines that lie on these faces
///         layers.finish(frame, true);
///     }
class GlassLayers
{
public:
    enum class Step { Sum, Foremost };

    /// Makes the layers for a frame and takes over the depths of what is in its picture; false if the driver
    /// can't. `touched` is where anything will be drawn.
    [[nodiscard]] bool begin(const Frame& frame, const Area& touched);
    void take(Step step) const;
    /// What is drawn from then on lies on the foremost faces.
    void beginLines() const;
    /// Brings all into the picture, and leaves the state as Frame::drawIntoPicture makes it.
    void finish(const Frame& frame, bool lined);
    void release();
    /// Frees what only large pictures need.
    void releaseIfLarge();

private:
    enum Texture { kSums, kWeights, kForemost, kLines, kDepths, kTextures };

    bool makeProgram();
    bool makeStorage(int width, int height, GLenum depthFormat);
    Area withBorder(const Frame& frame) const;
    bool copyDepths(const Frame& frame) const;

    Program m_program;
    bool m_tried = false;
    GLuint m_noArray = 0;
    GLuint m_framebuffer = 0, m_textures[kTextures] = {};
    GLenum m_depthFormat = 0;
    int m_width = 0, m_height = 0;
    Area m_touched{}; ///< In pixels of the framebuffer.
};

} // namespace Rendra
