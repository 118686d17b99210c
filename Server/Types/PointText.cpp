#include "Server/Types/PointText.h"

#include "Server/Base/NumberText.h"

#include <charconv>

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
    const auto values = readTriple(text);
    if (values)
        result = {(*values)[0], (*values)[1], (*values)[2]};
    return values.has_value();
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
