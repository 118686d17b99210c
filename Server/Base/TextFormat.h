#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Vs {

/// A parameter format, `%s %f %d %v %p3`, taken apart for checking.
class TextFormat
{
public:
    enum class Type : unsigned char { Text, Real, Integer, Vector, Point };
    /// What a parameter says: nothing but its text, a real, an integer, or a vector or a point.
    using Value = std::variant<std::monostate, double, long long, std::array<double, 3>>;

    /// Throws Vs::Exception when the format is malformed.
    explicit TextFormat(std::string_view format);

    const std::vector<Type>& types() const { return m_types; }

    /// What the parameters say, one value for each that the format has; or the index of the first that has
    /// another form than the format says. Parameters beyond the format, and missing ones, pass.
    [[nodiscard]] std::variant<std::vector<Value>, size_t>
    read(const std::vector<std::wstring>& parameters) const;

    /// Nothing if the text is of another form.
    [[nodiscard]] static std::optional<Value> read(Type type, std::wstring_view text);
    /// What a parameter of that type must be, as in "a whole number".
    static const char* expectation(Type type);
    /// "parameter 2 must be a whole number, not "x"", with what is left of a long text.
    static std::wstring refusal(Type type, size_t index, std::wstring text);

private:
    std::vector<Type> m_types;
};

} // namespace Vs
