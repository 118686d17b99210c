#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/TimedCommand.h"

#include <string>

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// The record of a row, with the drive's trade name behind a title that ends in a blank.
[[nodiscard]] Info cloudInfo(const CommandRow& row);
[[nodiscard]] bool cloudIsEnabled();

/// The base of definitions of the cloud drive: applicable unless the drive is disabled, and titled with its
/// trade name where the row's title ends in a blank.
template <class Self, class Cmd>
class CloudDefinition : public CommandRowDefinition<Self, Cmd, CommandDefinition, Vs::DocumentEventSite>
{
public:
    static Info* info()
    {
        static Info record = cloudInfo(Self::kRow);
        return &record;
    }
    CloudDefinition() : CommandRowDefinition<Self, Cmd, CommandDefinition, Vs::DocumentEventSite>(info()) {}

protected:
    bool onIsApplicable(CommandContext*) const override { return cloudIsEnabled(); }
};

/// Signs in if nobody is signed in, asking at most once per command.
[[nodiscard]] bool cloudLogin();

/// As "Quillet Design (*.vlra)".
[[nodiscard]] std::wstring cloudFilter(const Vs::Document& document);

} // namespace Vu::Commands
