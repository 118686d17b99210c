#pragma once

#include <stdexcept>
#include <string>

namespace Vs {

/// What the framework throws: a message that a person can act on.
class Exception : public std::runtime_error
{
public:
    /// UTF-8.
    explicit Exception(const std::string& message) : std::runtime_error(message) {}
    explicit Exception(const std::wstring& message);

    std::wstring message() const;
};

} // namespace Vs
