#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// A parameter format, `%s %f %d %v %p3`, taken apart for checking.
class TextFormat
{
public:
    enum class Type : unsigned char { Text, Real, Integer, Vector, Point };

    /// Throws Vs::Exception when the format is malformed.
    explicit TextFormat(std::string_view format);

    const std::vector<Type>& types() const { return m_types; }

    /// The index of the first parameter that has another form than the format says, or -1. Parameters beyond
    /// the format, and missing ones, pass.
    [[nodiscard]] int firstWrong(const std::vector<std::wstring>& parameters) const;

    /// What a parameter of that type must be, as in "a whole number".
    static const char* expectation(Type type);

private:
    std::vector<Type> m_types;
};

} // namespace Vs
