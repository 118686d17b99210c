#include "Server/Scene/Rendra/DepthFormat.h"

namespace Rendra {

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

} // namespace Rendra
