# The libraries that the program stands on. What one folder alone needs is looked for there.

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Boost 1.74 REQUIRED COMPONENTS filesystem locale thread)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Widgets OpenGL OpenGLWidgets PrintSupport Svg)
set(QT_NO_PRIVATE_MODULE_WARNING ON)
# No version is asked for here: the kernel accepts only its own exact version number as a match.
find_package(OpenCASCADE REQUIRED)
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
pkg_check_modules(LIBZIP REQUIRED IMPORTED_TARGET libzip)
pkg_check_modules(SECCOMP REQUIRED IMPORTED_TARGET libseccomp)
pkg_check_modules(ZLIB REQUIRED IMPORTED_TARGET zlib)
pkg_check_modules(EPOXY REQUIRED IMPORTED_TARGET epoxy)
# Debian's own interpreter, whatever else is first on the PATH.
set(Python3_EXECUTABLE /usr/bin/python3)
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter Development.Embed)
find_package(Gettext REQUIRED)
