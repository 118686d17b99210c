#include "Server/Scene/Rendra/PictureTarget.h"

#include "Server/Scene/Rendra/CommonShaders.h"

#include <algorithm>
#include <string>

namespace Rendra {

namespace {

/// Drivers keep compiled programs from one run to the next, but not always what they compile themselves when
/// such a framebuffer is copied.
constexpr const char* kAverageFragment = R"(
uniform sampler2DMS drawn;
out vec4 result;

void main()
{
    vec4 sum = vec4(0.0);
    for (int i = 0; i < SAMPLES; ++i)
        sum += texelFetch(drawn, ivec2(gl_FragCoord.xy), i);
    result = sum / float(SAMPLES);
}
)";

} // namespace

bool PictureTarget::Surface::make(int width, int height, int samples, bool withDepth)
{
    const auto storage = [&](GLenum format, GLenum attachment) {
        GLuint buffer = 0;
        glGenRenderbuffers(1, &buffer);
        glBindRenderbuffer(GL_RENDERBUFFER, buffer);
        if (samples > 1)
            glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
        else
            glRenderbufferStorage(GL_RENDERBUFFER, format, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, buffer);
        return buffer;
    };
    while (glGetError() != GL_NO_ERROR) {
    }
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    if (samples > 1) {
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, texture);
        glTexImage2DMultisample(GL_TEXTURE_2D_MULTISAMPLE, samples, GL_RGBA8, width, height, GL_TRUE);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D_MULTISAMPLE, texture, 0);
        glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
    } else {
        colour = storage(GL_RGBA8, GL_COLOR_ATTACHMENT0);
    }
    if (withDepth)
        depth = storage(GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    return glGetError() == GL_NO_ERROR && glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

void PictureTarget::Surface::release()
{
    glDeleteFramebuffers(1, &framebuffer);
    const GLuint buffers[] = {colour, depth};
    glDeleteRenderbuffers(2, buffers);
    glDeleteTextures(1, &texture);
    *this = Surface();
}

int PictureTarget::samplesOffered(int wanted)
{
    GLint most = 1, mostOfTextures = 1;
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    glGetIntegerv(GL_MAX_COLOR_TEXTURE_SAMPLES, &mostOfTextures);
    return std::max(1, std::min({wanted, int(most), int(mostOfTextures)}));
}

bool PictureTarget::prepare(int width, int height, int scale, int samples)
{
    if (width == m_width && height == m_height && scale == m_scale && samples == m_samples)
        return true;
    release();
    m_width = width;
    m_height = height;
    m_scale = scale;
    m_samples = samples;
    if (makeAll())
        return true;
    release();
    return false;
}

bool PictureTarget::makeAll()
{
    const int width = m_width * m_scale, height = m_height * m_scale;
    if (!m_target.make(width, height, m_samples, true))
        return false;
    m_drawn = m_target.framebuffer;
    if (m_samples > 1 && !m_resolved.make(width, height, 1, false))
        return false;
    if (m_samples > 1 && !m_average) {
        Vs::Status ignored; // then it is copied
        m_average.make("average", {kWholeVertex},
                       {("#define SAMPLES " + std::to_string(m_samples) + "\n").c_str(), kAverageFragment},
                       ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    return m_scale == 1 || m_small.make(m_width, m_height, 1, false);
}

void PictureTarget::read(int width, int height, uint8_t* pixels, int stride)
{
    GLuint from = m_target.framebuffer;
    const auto copy = [&](GLuint to, int scaleFrom, int scaleTo, GLenum filter) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, from);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to);
        glBlitFramebuffer(0, 0, width * scaleFrom, height * scaleFrom, 0, 0, width * scaleTo,
                          height * scaleTo, GL_COLOR_BUFFER_BIT, filter);
        from = to;
    };
    if (m_samples > 1 && m_average) {
        average(width * m_scale, height * m_scale);
        from = m_resolved.framebuffer;
    } else if (m_samples > 1) {
        copy(m_resolved.framebuffer, m_scale, m_scale, GL_NEAREST);
    }
    if (m_scale > 1)
        copy(m_small.framebuffer, m_scale, 1, GL_LINEAR); // half the size: each pixel is the mean of four
    glBindFramebuffer(GL_READ_FRAMEBUFFER, from);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_PACK_ROW_LENGTH, stride);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
}

void PictureTarget::average(int width, int height)
{
    glBindFramebuffer(GL_FRAMEBUFFER, m_resolved.framebuffer);
    glViewport(0, 0, width, height);
    for (const int each : {GL_DEPTH_TEST, GL_BLEND, GL_SCISSOR_TEST, GL_CULL_FACE})
        glDisable(GLenum(each));
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    m_average.use();
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, m_target.texture);
    glUniform1i(m_average.uniform("drawn"), 0);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
    glBindVertexArray(0);
    glUseProgram(0);
}

void PictureTarget::release()
{
    m_average.release();
    glDeleteVertexArrays(1, &m_noArray);
    m_noArray = 0;
    for (Surface* surface : {&m_target, &m_resolved, &m_small})
        surface->release();
    m_drawn = 0;
    m_width = m_height = m_scale = m_samples = 0;
}

} // namespace Rendra
