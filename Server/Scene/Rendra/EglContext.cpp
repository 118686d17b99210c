#include "Server/Scene/Rendra/EglContext.h"

#include "Server/Base/Strings.h"
#include "Server/Scene/Rendra/DriverGuard.h"
#include "Server/Scene/Rendra/DriverReset.h"

#include <dlfcn.h>
#include <epoxy/egl.h>
#include <epoxy/gl.h>

namespace Rendra {

namespace {

/// Epoxy ends the process if it doesn't find a library, so this checks first.
bool hasLibrary(const char* name)
{
    return dlopen(name, RTLD_LAZY | RTLD_LOCAL) != nullptr;
}

EGLContext contextOf(EGLDisplay display)
{
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr))
        return EGL_NO_CONTEXT;
    EGLContext context = EGL_NO_CONTEXT;
    if (eglBindAPI(EGL_OPENGL_API) && epoxy_has_egl_extension(display, "EGL_KHR_surfaceless_context")) {
        const EGLint wanted[] = {EGL_SURFACE_TYPE, 0, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        eglChooseConfig(display, wanted, &config, 1, &count);
        // Without this, a driver need not tell that a graphics unit was reset.
        const bool tells = epoxy_has_egl_extension(display, "EGL_EXT_create_context_robustness");
        const EGLint attributes[] = {EGL_CONTEXT_MAJOR_VERSION,
                                     3,
                                     EGL_CONTEXT_MINOR_VERSION,
                                     3,
                                     EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                     EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                     tells ? EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_KHR : EGL_NONE,
                                     EGL_LOSE_CONTEXT_ON_RESET_KHR,
                                     EGL_NONE};
        context =
            eglCreateContext(display, count > 0 ? config : EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, attributes);
    }
    if (context != EGL_NO_CONTEXT && eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context))
        return context;
    if (context != EGL_NO_CONTEXT)
        eglDestroyContext(display, context);
    eglTerminate(display);
    return EGL_NO_CONTEXT;
}

/// If drivers have no surfaceless platform, the GPUs themselves are enumerated.
EGLDisplay deviceDisplay(EGLint index)
{
    if (!epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_platform_device") ||
        !epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_device_enumeration"))
        return EGL_NO_DISPLAY;
    EGLDeviceEXT devices[8];
    EGLint count = 0;
    if (!eglQueryDevicesEXT(8, devices, &count) || index >= count)
        return EGL_NO_DISPLAY;
    return eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, devices[index], nullptr);
}

} // namespace

std::unique_ptr<EglContext> EglContext::make(Vs::Status& status)
{
    static bool crashed = false; // for good, since a driver that did may hold its own locks
    std::unique_ptr<EglContext> made;
    Vs::Status reasons;
    if (!crashed)
        crashed = !survives([&] { made = find(reasons); });
    if (crashed)
        status.addError(
            L"Pictures cannot be drawn: the graphics driver crashed as it started. Look for a newer one, or "
            L"start the program with LIBGL_ALWAYS_SOFTWARE=1.");
    else
        status.merge(reasons);
    return made;
}

std::unique_ptr<EglContext> EglContext::find(Vs::Status& status)
{
    if (!hasLibrary("libEGL.so.1") || !(hasLibrary("libOpenGL.so.0") || hasLibrary("libGL.so.1"))) {
        status.addError(
            L"Pictures cannot be drawn: the libraries libEGL.so.1 and libOpenGL.so.0 or libGL.so.1 "
            L"are not installed.");
        return nullptr;
    }
    if (epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_MESA_platform_surfaceless")) {
        const EGLDisplay display =
            eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (const EGLContext context = contextOf(display))
            return std::unique_ptr<EglContext>(new EglContext(display, context));
    }
    for (EGLint index = 0; index < 8; ++index) {
        const EGLDisplay display = deviceDisplay(index);
        if (display == EGL_NO_DISPLAY)
            break;
        if (const EGLContext context = contextOf(display))
            return std::unique_ptr<EglContext>(new EglContext(display, context));
    }
    status.addError(
        L"Pictures cannot be drawn: no graphics driver of this machine offers OpenGL 3.3 without a "
        L"display. The package libgl1-mesa-dri has one that needs no graphics unit.");
    return nullptr;
}

EglContext::~EglContext()
{
    eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    // The display belongs to the process, and other contexts may be using it.
    eglDestroyContext(m_display, m_context);
}

bool EglContext::isLost() const
{
    return eglGetCurrentContext() != m_context || driverWasReset();
}

bool EglContext::retake()
{
    return eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context) == EGL_TRUE;
}

std::wstring EglContext::description() const
{
    const auto text = [](GLenum name) {
        const GLubyte* value = glGetString(name);
        return value ? std::string(reinterpret_cast<const char*>(value)) : std::string();
    };
    return Vs::Strings::widen(text(GL_VERSION) + ", " + text(GL_RENDERER));
}

} // namespace Rendra
