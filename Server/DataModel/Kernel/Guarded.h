#pragma once

#include <Standard_Failure.hxx>

#include <stdexcept>
#include <string>

namespace Vs::Kernel {

/// Converts the kernel's exceptions to those that the rest of the program knows.
template <class Work>
auto guarded(Work&& work)
{
    try {
        return work();
    } catch (const Standard_Failure& failure) {
        const char* text = failure.GetMessageString();
        throw std::runtime_error("the geometry kernel failed: " +
                                 std::string(text && *text ? text : failure.DynamicType()->Name()));
    }
}

} // namespace Vs::Kernel
