#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// Lets whoever adds an error offer a remedy when the user looks at the message.
class StatusCodeCallback
{
public:
    virtual ~StatusCodeCallback() = default;
    virtual void activated() = 0;
};

/// Accumulates what went wrong while a command ran. Warnings inform the user but leave the status ok.
class [[nodiscard]] Status
{
public:
    [[nodiscard]] bool isOk() const { return m_errors.empty(); }
    [[nodiscard]] bool isError() const { return !m_errors.empty(); }

    /// Adds an error. The callback is not owned and may be null.
    void addError(std::wstring message, StatusCodeCallback* callback = nullptr);
    void addWarning(std::wstring message);

    /// The errors, one per line; the warnings if there are no errors.
    std::wstring toString() const;
    const std::vector<std::wstring>& warnings() const { return m_warnings; }

    /// Whether an error's text holds `text` (UTF-8).
    [[nodiscard]] bool matchingError(std::string_view text) const;

    /// Forgets everything: errors, warnings and the reported mark.
    void clear();

    /// A reported status has already been shown to the user; nobody shows it again.
    bool reported() const { return m_reported; }
    void reported(bool value) { m_reported = value; }

    /// Adds everything that `other` holds.
    void merge(const Status& other);

private:
    struct Error
    {
        std::wstring message;
        StatusCodeCallback* callback;
    };

    std::vector<Error> m_errors;
    std::vector<std::wstring> m_warnings;
    bool m_reported = false;
};

} // namespace Vs
