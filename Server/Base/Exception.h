#pragma once

#include <source_location>
#include <stdexcept>
#include <string>

namespace Vs {

/// The framework's exception: a message that a person can act on, and the place in the code where it was
/// thrown.
class Exception : public std::runtime_error
{
public:
    /// UTF-8.
    explicit Exception(const std::string& message,
                       std::source_location where = std::source_location::current());
    explicit Exception(const std::wstring& message,
                       std::source_location where = std::source_location::current());

    /// The text of `what()`.
    std::wstring message() const;
    /// `File.cpp:line`, for a report to the developers.
    std::string where() const;

private:
    std::source_location m_where;
};

} // namespace Vs
