#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Vs {

/// A parameter format, `%s %f %d %v %p3`, parsed for checking.
class TextFormat
{
public:
    enum class Type : unsigned char { Text, Real, Integer, Vector, Point };
    /// The value of a parameter: nothing but its text, a real, an integer, or a vector or point.
    using Value = std::variant<std::monostate, double, long long, std::array<double, 3>>;

    /// Throws Vs::Exception when the format is malformed.
    explicit TextFormat(std::string_view format);

    const std::vector<Type>& types() const { return m_types; }

    /// The parameters' values, one for each item of the format; or the index of the first whose form differs
    /// from the format. Parameters beyond the format, and missing ones, pass.
    [[nodiscard]] std::variant<std::vector<Value>, size_t>
    read(const std::vector<std::wstring>& parameters) const;

    /// Nothing if the text has another form.
    [[nodiscard]] static std::optional<Value> read(Type type, std::wstring_view text);
    /// What a parameter of that type must be, as in "a whole number".
    static const char* expectation(Type type);
    /// "parameter 2 must be a whole number, not "x"", with a long text shortened.
    static std::wstring refusal(Type type, size_t index, std::wstring text);

private:
    std::vector<Type> m_types;
};

} // namespace Vs
