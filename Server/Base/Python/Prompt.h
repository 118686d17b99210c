#pragma once

#include <pybind11/pybind11.h>
#include <string>
#include <vector>

namespace Vs::Python {

/// Takes Python line by line, as a console on a terminal does. The interpreter is held at each call.
class Prompt
{
public:
    /// `names` are those that the lines find and define.
    explicit Prompt(pybind11::dict names) : m_names(std::move(names)) {}

    /// Whether the statement goes on in the next line. Throws pybind11::error_already_set, a SystemExit for
    /// instance.
    [[nodiscard]] bool push(const std::string& line);
    /// Forgets the statement that was begun.
    void abandon();
    /// What the beginning of a line may be completed to. Empty before the first line.
    [[nodiscard]] std::vector<std::string> completions(const std::string& beginning);

private:
    pybind11::dict m_names;
    pybind11::object m_push, m_complete; ///< From the first line on.
};

} // namespace Vs::Python
