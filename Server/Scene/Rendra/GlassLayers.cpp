#include "Server/Scene/Rendra/GlassLayers.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/DepthFormat.h"
#include "Server/Scene/Rendra/GlassShaders.h"

#include <algorithm>
#include <utility>

namespace Rendra {

namespace {

constexpr GLenum kFormats[] = {GL_RGBA32F, GL_RG32F, GL_RGBA8, GL_RGBA8};
constexpr GLenum kAttachments[] = {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2,
                                   GL_COLOR_ATTACHMENT3};
/// What is larger than this part of the buffers is cleared with everything else.
constexpr int kPartToClear = 8;
/// More pixels than a canvas has on most screens.
constexpr int kLargePixels = 3 << 20;

} // namespace

bool GlassLayers::makeProgram()
{
    if (!std::exchange(m_tried[m_look], true)) {
        Vs::Status ignored; // transparent faces are then drawn over each other
        m_programs[m_look].make("glass", {kWholeVertex},
                                {m_look != kPlain ? "#define FINE\n" : "",
                                 m_look == kSampled ? "#define SAMPLED\n" : "", Shaders::kGlassFragment},
                                ignored);
        if (!m_noArray)
            glGenVertexArrays(1, &m_noArray);
    }
    return bool(m_programs[m_look]);
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
    m_width = width;
    m_height = height;
    m_depthFormat = depthFormat;
    attachDepths(0);
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

// 0 for the own ones.
void GlassLayers::attachDepths(GLuint renderbuffer)
{
    const GLenum attachment =
        m_depthFormat == GL_DEPTH24_STENCIL8 ? GL_DEPTH_STENCIL_ATTACHMENT : GL_DEPTH_ATTACHMENT;
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    if (renderbuffer)
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, renderbuffer);
    else
        glFramebufferTexture2D(GL_FRAMEBUFFER, attachment, GL_TEXTURE_2D, m_textures[kDepths], 0);
    m_sharesDepths = renderbuffer != 0;
}

// Depths that are only compared with need not be copied.
bool GlassLayers::shareDepths(const Frame& frame)
{
    if (frame.target.framebuffer == 0 || frame.target.samples > 1)
        return false;
    const auto ask = [&](GLenum what) {
        GLint value = 0;
        glGetFramebufferAttachmentParameteriv(GL_READ_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, what, &value);
        return value;
    };
    if (ask(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE) != GL_RENDERBUFFER)
        return false;
    attachDepths(GLuint(ask(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME)));
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE)
        return true;
    attachDepths(0);
    return false;
}

bool GlassLayers::begin(const Frame& frame, const Area& touched, bool fine, bool alone)
{
    m_look = !fine ? kPlain : alone || frame.target.samples == 1 ? kFine : kSampled;
    if (touched.width <= 0 || touched.height <= 0 || !makeProgram())
        return false;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    const GLenum format = depthFormat(frame.target.framebuffer);
    m_touched = {touched.x - frame.tile.x, touched.y - frame.tile.y, touched.width, touched.height};
    bool ready = format != 0 && makeStorage(frame.tile.width, frame.tile.height, format);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    ready = ready && (alone || (!fine && shareDepths(frame)) || copyDepths(frame));
    if (!ready) {
        frame.drawIntoPicture();
        return false;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    const Area around = withBorder(frame);
    glScissor(around.x, around.y, around.width, around.height);
    // Software drivers clear a whole buffer faster than a large part of it.
    const bool isLarge =
        int64_t(around.width) * around.height * kPartToClear > int64_t(frame.tile.width) * frame.tile.height;
    isLarge ? glDisable(GL_SCISSOR_TEST) : glEnable(GL_SCISSOR_TEST);
    const float nothing[4] = {0, 0, 0, 0};
    const int buffers = fine ? kForemost + 1 : kWeights + 1;
    glDrawBuffers(buffers, kAttachments);
    for (int i = 0; i < buffers; ++i)
        glClearBufferfv(GL_COLOR, i, nothing);
    if (alone)
        glClear(GL_DEPTH_BUFFER_BIT);
    glEnable(GL_SCISSOR_TEST);
    // Between the faces of opaque bodies, which are pushed back further, and lines, which aren't.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(0.5f, 0.5f);
    return true;
}

void GlassLayers::take(Step step)
{
    const GLboolean sums = step != Step::Foremost, front = !sums;
    constexpr GLenum kOfFront[] = {GL_NONE, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2};
    m_separate = step == Step::Behind;
    sums ? glDrawBuffers(kWeights + 1, kAttachments) : glDrawBuffers(kForemost + 1, kOfFront);
    glColorMaski(kWeights, sums, front, GL_FALSE, GL_FALSE);
    glDepthMask(front);
    glDepthFunc(m_separate ? GL_GREATER : GL_LEQUAL);
    sums ? glEnable(GL_BLEND) : glDisable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
}

void GlassLayers::beginLines() const
{
    glDisable(GL_POLYGON_OFFSET_FILL);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDrawBuffers(1, &kAttachments[kLines]);
    glDepthFunc(GL_LEQUAL);
    const float nothing[4] = {0, 0, 0, 0};
    glClearBufferfv(GL_COLOR, 0, nothing);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glBlendEquation(GL_MAX); // in whatever order
}

void GlassLayers::finish(const Frame& frame, bool lined)
{
    glDisable(GL_POLYGON_OFFSET_FILL);
    glBlendEquation(GL_FUNC_ADD);
    if (m_sharesDepths)
        attachDepths(0);
    frame.drawIntoPicture();
    glScissor(m_touched.x, m_touched.y, m_touched.width, m_touched.height);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    // Only where there are several samples, some may be hidden.
    if (m_look != kSampled)
        glDisable(GL_DEPTH_TEST);
    const Program& program = m_programs[m_look];
    program.use();
    const char* const names[] = {"sums", "weights", "foremost", "lines", "depths"};
    for (int i = 0; i < kTextures; ++i) {
        glActiveTexture(GLenum(GL_TEXTURE0 + i));
        glBindTexture(GL_TEXTURE_2D, m_textures[i]);
        glUniform1i(program.uniform(names[i]), i);
    }
    glUniform1i(program.uniform("lined"), lined);
    glUniform1i(program.uniform("separate"), m_separate);
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
