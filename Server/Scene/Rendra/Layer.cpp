#include "Server/Scene/Rendra/Layer.h"

namespace Rendra {

namespace {

/// More pixels than a canvas has on most screens.
constexpr int kLargePixels = 3 << 20;

} // namespace

GLuint Layer::makeTexture(Kind kind, int width, int height)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    switch (kind) {
    case Kind::Depth:
        glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT32F, width, height, 0, GL_DEPTH_COMPONENT, GL_FLOAT,
                     nullptr);
        break;
    case Kind::Value:
        glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, width, height, 0, GL_RED, GL_UNSIGNED_BYTE, nullptr);
        break;
    case Kind::Pairs:
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16, width, height, 0, GL_RGBA, GL_UNSIGNED_SHORT, nullptr);
        break;
    case Kind::Pair:
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RG16, width, height, 0, GL_RG, GL_UNSIGNED_SHORT, nullptr);
        break;
    default:
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    }
    const GLint filter = kind == Kind::Depth ? GL_NEAREST : GL_LINEAR;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return texture;
}

bool Layer::make(Kind kind, int width, int height)
{
    if (m_framebuffer && width == m_width && height == m_height && kind == m_kind)
        return true;
    release();
    m_kind = kind;
    m_texture = makeTexture(kind, width, height);
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    if (kind == Kind::Depth) {
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, m_texture, 0);
        glDrawBuffer(GL_NONE);
        glReadBuffer(GL_NONE);
    } else {
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_texture, 0);
        if (kind == Kind::Colour) {
            m_depths = makeTexture(Kind::Depth, width, height);
            glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, m_depths, 0);
        }
    }
    m_width = width;
    m_height = height;
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE)
        return true;
    release();
    return false;
}

void Layer::begin() const
{
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, m_width, m_height);
}

void Layer::release()
{
    glDeleteFramebuffers(1, &m_framebuffer);
    const GLuint textures[] = {m_texture, m_depths};
    glDeleteTextures(2, textures);
    *this = Layer();
}

void Layer::releaseIfLarge()
{
    if (m_width > 0 && m_height > kLargePixels / m_width)
        release();
}

} // namespace Rendra
