#include "Server/Base/FilledText.h"

#include <boost/format.hpp>

namespace Vs {

std::wstring fillText(const std::wstring& text, std::initializer_list<FilledValue> values)
{
    boost::wformat format(text);
    format.exceptions(boost::io::no_error_bits);
    for (const FilledValue& value : values)
        format % value.text();
    return format.str();
}

} // namespace Vs
