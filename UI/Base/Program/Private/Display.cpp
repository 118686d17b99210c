#include "UI/Base/Program/Private/Display.h"

#include "Server/Base/SiblingLibrary.h"

namespace Vu {

Display* Display::get()
{
    static Display* const display =
        Vs::SiblingLibrary("libVuWindow10.so").function<Display* (*)()>("vuDisplay")();
    return display;
}

} // namespace Vu
