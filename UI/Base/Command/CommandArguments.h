#pragma once

#include "Server/Base/Status.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Vu {

class CommandContext;

/// What a command can be given at its start, whoever starts it: a row of an add-in's table.
struct CommandArguments
{
    const wchar_t* command;                    ///< CommandDefinition::id.
    std::array<const wchar_t*, 10> names = {}; ///< None for a command that takes no argument.
};

/// Declares the arguments of an add-in's commands for as long as it lives. A command that nobody declares
/// takes whatever comes. Main thread only.
class DeclaredArguments
{
public:
    /// The rows are kept by reference.
    explicit DeclaredArguments(std::span<const CommandArguments> rows);
    ~DeclaredArguments();
    DeclaredArguments(const DeclaredArguments&) = delete;
    DeclaredArguments& operator=(const DeclaredArguments&) = delete;

    /// The names; nothing for a command that isn't declared.
    [[nodiscard]] static std::optional<std::vector<std::wstring>> of(const std::wstring& command);

private:
    std::span<const CommandArguments> m_rows;
};

/// Whether the context has no other arguments than the known ones. The first other one is told, with the name
/// that was probably meant: a command that ignored it would do something else than what was asked for.
/// `title` is what the command is called.
[[nodiscard]] bool hasOnlyKnownArguments(const CommandContext& context, const std::wstring& title,
                                         const std::vector<std::wstring>& known, Vs::Status& status);

} // namespace Vu
