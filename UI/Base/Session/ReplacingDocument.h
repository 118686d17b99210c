#pragma once

#include "UI/Base/Command/CommandContext.h"

#include <string>

namespace Vu {

class CommandDefinition;

/// How a person opens or makes a document by hand: a button, keys, a drop, a tile, an entry of a list. The
/// command that does it closes the shown document without a question; so the question whether its changes
/// are to be saved comes first, and the command runs only where the user lets the document go. Lines,
/// transcripts and tests run the command itself and are asked nothing. Main thread only.
class ReplacingDocument
{
public:
    /// Says that this command closes the shown document.
    static void byCommand(const std::wstring& id);
    [[nodiscard]] static bool isCommand(const CommandDefinition* definition);

    /// Whether the shown document may go; asks only if it was changed. Opening the file that shows closes
    /// nothing.
    [[nodiscard]] static bool agreed(const std::wstring& openedFile = {});
    /// Runs the command behind the current event, if the shown document may go then. Where the context has a
    /// path, that is the file that is opened.
    static void executeLater(CommandDefinition* definition, CommandContext context);
};

} // namespace Vu
