#pragma once

#include "Server/Scene/Rendra/Frame.h"

namespace Rendra {

/// Collects transparent faces before they are composited into the picture, so that their drawing order
/// doesn't matter: the foremost at each pixel, and the sum of all. One sample per pixel is taken: several
/// would cost more than everything opaque, and transparent faces have faint edges. Where nothing opaque is in
/// view, Step::Foremost and then Step::Behind, which sums the others alone, cost less than the steps below.
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
    enum class Step { Sum, Foremost, Behind };

    /// Creates the layers for a frame and takes over the depths of its picture; false if the driver can't.
    /// `touched` is where anything will be drawn. Unless it is to be `fine`, only Step::Sum may be taken, and
    /// no lines drawn. Where transparent faces are `alone`, nothing can hide them.
    [[nodiscard]] bool begin(const Frame& frame, const Area& touched, bool fine, bool alone);
    void take(Step step);
    /// What is drawn from then on lies on the foremost faces.
    void beginLines() const;
    /// Composites everything into the picture, and leaves the state as Frame::drawIntoPicture sets it.
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
    bool shareDepths(const Frame& frame);
    void attachDepths(GLuint renderbuffer);

    enum Look { kPlain, kFine, kSampled, kLooks };

    Program m_programs[kLooks];
    bool m_tried[kLooks] = {};
    Look m_look = kPlain;
    GLuint m_noArray = 0;
    GLuint m_framebuffer = 0, m_textures[kTextures] = {};
    GLenum m_depthFormat = 0;
    int m_width = 0, m_height = 0;
    bool m_sharesDepths = false;
    bool m_separate = false; ///< The foremost isn't among those that were summed.
    Area m_touched{};        ///< In pixels of the framebuffer.
};

} // namespace Rendra
