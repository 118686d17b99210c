#include "Server/Scene/Rendra/GlassLayers.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/GlassShaders.h"

#include <algorithm>
#include <utility>

namespace Rendra {

namespace {

constexpr GLenum kFormats[] = {GL_RGBA32F, GL_RG32F, GL_RGBA16F, GL_RGBA8};
constexpr GLenum kAttachments[] = {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2,
                                   GL_COLOR_ATTACHMENT3};
/// More pixels than a canvas has on most screens.
constexpr int kLargePixels = 3 << 20;

/// The depth format of the framebuffer that is bound for reading: depths can only be copied between equal
/// formats. 0 if it isn't a known one.
GLenum depthFormat(GLuint framebuffer)
{
    const GLenum attachment = framebuffer == 0 ? GL_DEPTH : GL_DEPTH_ATTACHMENT;
    const auto ask = [&](GLenum what) {
        GLint value = 0;
        glGetFramebufferAttachmentParameteriv(GL_READ_FRAMEBUFFER, attachment, what, &value);
        return value;
    };
    if (ask(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE) == GL_NONE)
        return 0;
    const GLint bits = ask(GL_FRAMEBUFFER_ATTACHMENT_DEPTH_SIZE);
    if (bits == 32)
        return ask(GL_FRAMEBUFFER_ATTACHMENT_COMPONENT_TYPE) == GL_FLOAT ? GL_DEPTH_COMPONENT32F
                                                                         : GL_DEPTH_COMPONENT32;
    const bool hasStencil = ask(GL_FRAMEBUFFER_ATTACHMENT_STENCIL_SIZE) > 0;
    return bits == 24 ? (hasStencil ? GL_DEPTH24_STENCIL8 : GL_DEPTH_COMPONENT24)
                      : (bits == 16 ? GL_DEPTH_COMPONENT16 : 0);
}

} // namespace

bool GlassLayers::makeProgram()
{
    if (!std::exchange(m_tried, true)) {
        Vs::Status ignored; // transparent faces are then drawn over each other
        m_program.make("glass", {kWholeVertex}, {Shaders::kGlassFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    return bool(m_program);
}

bool GlassLayers::makeStorage(int width, int height, GLenum depthFormat)
{
    if (m_width >= width && m_height >= height && m_depthFormat == depthFormat)
        return true;
    release();
    while (glGetError() != GL_NO_ERROR) {
    }
    glGenTextures(kTextures, m_textures);
    for (int i = 0; i < kTextures; ++i) {
        glBindTexture(GL_TEXTURE_2D, m_textures[i]);
        if (i < kDepths)
            glTexImage2D(GL_TEXTURE_2D, 0, GLint(kFormats[i]), width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                         nullptr);
        else if (depthFormat == GL_DEPTH24_STENCIL8)
            glTexImage2D(GL_TEXTURE_2D, 0, GLint(depthFormat), width, height, 0, GL_DEPTH_STENCIL,
                         GL_UNSIGNED_INT_24_8, nullptr);
        else
            glTexImage2D(GL_TEXTURE_2D, 0, GLint(depthFormat), width, height, 0, GL_DEPTH_COMPONENT, GL_FLOAT,
                         nullptr);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    }
    glBindTexture(GL_TEXTURE_2D, 0);
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    for (int i = 0; i < kDepths; ++i)
        glFramebufferTexture2D(GL_FRAMEBUFFER, kAttachments[i], GL_TEXTURE_2D, m_textures[i], 0);
    glFramebufferTexture2D(GL_FRAMEBUFFER,
                           depthFormat == GL_DEPTH24_STENCIL8 ? GL_DEPTH_STENCIL_ATTACHMENT
                                                              : GL_DEPTH_ATTACHMENT,
                           GL_TEXTURE_2D, m_textures[kDepths], 0);
    m_width = width;
    m_height = height;
    m_depthFormat = depthFormat;
    const bool works =
        glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE && glGetError() == GL_NO_ERROR;
    if (!works)
        release();
    return works;
}

// With several samples, drivers apply a scissor one pixel too wide.
Area GlassLayers::withBorder(const Frame& frame) const
{
    return intersection({m_touched.x - 1, m_touched.y - 1, m_touched.width + 2, m_touched.height + 2},
                        {0, 0, frame.tile.width, frame.tile.height});
}

bool GlassLayers::copyDepths(const Frame& frame) const
{
    const Area at = withBorder(frame);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_framebuffer);
    glBlitFramebuffer(at.x, at.y, at.x + at.width, at.y + at.height, at.x, at.y, at.x + at.width,
                      at.y + at.height, GL_DEPTH_BUFFER_BIT, GL_NEAREST);
    return glGetError() == GL_NO_ERROR;
}

bool GlassLayers::begin(const Frame& frame, const Area& touched)
{
    if (touched.width <= 0 || touched.height <= 0 || !makeProgram())
        return false;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    const GLenum format = depthFormat(frame.target.framebuffer);
    m_touched = {touched.x - frame.tile.x, touched.y - frame.tile.y, touched.width, touched.height};
    if (format == 0 || !makeStorage(frame.tile.width, frame.tile.height, format) || !copyDepths(frame)) {
        frame.drawIntoPicture();
        return false;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glDrawBuffers(kForemost + 1, kAttachments);
    glEnable(GL_SCISSOR_TEST);
    const Area around = withBorder(frame);
    glScissor(around.x, around.y, around.width, around.height);
    const float nothing[4] = {0, 0, 0, 0}, unhidden[4] = {0, 0, 0, 1};
    glClearBufferfv(GL_COLOR, kSums, unhidden);
    glClearBufferfv(GL_COLOR, kWeights, nothing);
    glClearBufferfv(GL_COLOR, kForemost, nothing);
    // Between the faces of opaque bodies, which are pushed back further, and lines, which aren't.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(0.5f, 0.5f);
    return true;
}

void GlassLayers::take(Step step) const
{
    const GLboolean sums = step == Step::Sum, front = step == Step::Foremost;
    glColorMaski(kSums, sums, sums, sums, sums);
    glColorMaski(kWeights, sums, front, GL_FALSE, GL_FALSE);
    glColorMaski(kForemost, front, front, front, front);
    glDepthMask(front);
    glDepthFunc(GL_LEQUAL);
    sums ? glEnable(GL_BLEND) : glDisable(GL_BLEND);
    glBlendFuncSeparate(GL_ONE, GL_ONE, GL_ZERO, GL_ONE_MINUS_SRC_ALPHA);
}

void GlassLayers::beginLines() const
{
    glDisable(GL_POLYGON_OFFSET_FILL);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDrawBuffers(1, &kAttachments[kLines]);
    const float nothing[4] = {0, 0, 0, 0};
    glClearBufferfv(GL_COLOR, 0, nothing);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

void GlassLayers::finish(const Frame& frame, bool lined)
{
    glDisable(GL_POLYGON_OFFSET_FILL);
    frame.drawIntoPicture();
    glScissor(m_touched.x, m_touched.y, m_touched.width, m_touched.height);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    m_program.use();
    const char* const names[] = {"sums", "weights", "foremost", "lines", "depths"};
    for (int i = 0; i < kTextures; ++i) {
        glActiveTexture(GLenum(GL_TEXTURE0 + i));
        glBindTexture(GL_TEXTURE_2D, m_textures[i]);
        glUniform1i(m_program.uniform(names[i]), i);
    }
    glUniform1i(m_program.uniform("lined"), lined);
    glUniform1i(m_program.uniform("sampled"), frame.target.samples > 1);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    for (int i = kTextures; i-- > 0;) {
        glActiveTexture(GLenum(GL_TEXTURE0 + i));
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    glDisable(GL_SCISSOR_TEST);
    frame.drawIntoPicture();
}

void GlassLayers::release()
{
    glDeleteFramebuffers(1, &m_framebuffer);
    glDeleteTextures(kTextures, m_textures);
    m_framebuffer = 0;
    std::fill(std::begin(m_textures), std::end(m_textures), 0);
    m_width = m_height = 0;
    m_depthFormat = 0;
}

void GlassLayers::releaseIfLarge()
{
    if (m_width > 0 && m_height > kLargePixels / m_width)
        release();
}

} // namespace Rendra
