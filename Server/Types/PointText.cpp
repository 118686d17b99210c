#include "Server/Types/PointText.h"

#include "Server/Base/Strings.h"

#include <charconv>
#include <cmath>

namespace Vs::Types {

namespace {

std::wstring toText(double x, double y, double z)
{
    // Three numbers of at most 24 characters and two commas.
    char text[3 * 24 + 2];
    char* end = text;
    for (const double value : {x, y, z}) {
        if (end != text)
            *end++ = ',';
        end = std::to_chars(end, text + sizeof text, value).ptr;
    }
    return std::wstring(text, end);
}

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool readNumber(std::string_view text, double& value)
{
    text = trimmed(text);
    // from_chars takes no plus sign, but people write one.
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
}

bool readThree(std::wstring_view wide, double (&values)[3])
{
    const std::string narrow = Strings::narrow(wide);
    std::string_view text = trimmed(narrow);
    if (text.starts_with('(') != text.ends_with(')'))
        return false;
    if (text.starts_with('('))
        text = text.substr(1, text.size() - 2);
    const size_t first = text.find(',');
    const size_t second = first == std::string_view::npos ? first : text.find(',', first + 1);
    return second != std::string_view::npos && readNumber(text.substr(0, first), values[0]) &&
           readNumber(text.substr(first + 1, second - first - 1), values[1]) &&
           readNumber(text.substr(second + 1), values[2]);
}

} // namespace

std::wstring Point3dToString(const GkPoint3d& point)
{
    return toText(point.x, point.y, point.z);
}

std::wstring Vector3dToString(const GkVector3d& vector)
{
    return toText(vector.x, vector.y, vector.z);
}

bool StringToPoint3d(std::wstring_view text, GkPoint3d& result)
{
    double values[3];
    if (!readThree(text, values))
        return false;
    result = {values[0], values[1], values[2]};
    return true;
}

bool StringToVector3d(std::wstring_view text, GkVector3d& result)
{
    GkPoint3d point;
    if (!StringToPoint3d(text, point))
        return false;
    result = point.asVector();
    return true;
}

} // namespace Vs::Types
