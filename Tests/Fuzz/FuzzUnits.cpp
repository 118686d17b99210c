// Any bytes as a number with a unit: it has a finite value, or a reason why it has none.

#include "Server/Base/Strings.h"
#include "Server/Types/Units/Expression.h"
#include "Tests/Fuzz/Fuzz.h"

#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::wstring text = Vs::Strings::widen({reinterpret_cast<const char*>(data), size});
    using Vs::Units::Quantity;
    for (const Quantity quantity : {Quantity::Length, Quantity::Angle, Quantity::Area}) {
        std::wstring why;
        const auto value = Vs::Units::evaluate(text, Vs::Units::Unit::display(quantity), why);
        require(value ? std::isfinite(*value) : !why.empty(), "neither a value nor a reason");
    }
    return 0;
}
