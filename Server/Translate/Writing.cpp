#include "Server/Translate/Writing.h"

#include <boost/algorithm/string/case_conv.hpp>

namespace Vs::Translate {

std::string unitWord(const Writing& writing)
{
    return writing.unit == "in" ? "INCH" : boost::to_upper_copy(writing.unit);
}

} // namespace Vs::Translate
