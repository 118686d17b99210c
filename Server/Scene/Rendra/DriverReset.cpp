#include "Server/Scene/Rendra/DriverReset.h"

#include <epoxy/gl.h>

namespace Rendra {

bool driverWasReset()
{
    const bool tells = epoxy_gl_version() >= 45 || epoxy_has_gl_extension("GL_KHR_robustness");
    return tells && glGetGraphicsResetStatus() != GL_NO_ERROR;
}

} // namespace Rendra
