#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Vu {

/// A sample model that comes with an add-in; the home screen offers it. Registered for as long as it lives.
/// Main thread only.
class Sample
{
public:
    struct Description
    {
        std::wstring title;   ///< In the user's language.
        std::wstring note;    ///< What it is, in a few words.
        std::wstring picture; ///< The path of a picture, PNG.
    };
    using Describe = std::function<Description()>;

    /// The line that opens it in a document of its own; a recording has it as well.
    Sample(Describe describe, std::wstring line);
    ~Sample();
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    /// In the order of their registration.
    [[nodiscard]] static const std::vector<const Sample*>& all();

    [[nodiscard]] Description description() const { return m_describe(); }
    const std::wstring& line() const { return m_line; }

private:
    Describe m_describe;
    std::wstring m_line;
};

} // namespace Vu
