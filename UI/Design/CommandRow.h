#pragma once

#include "UI/Base/Command/CommandRow.h"
#include "UI/Design/Localized.h"

namespace Vu::Design {

// Builds the host's records and definitions from rows, with this add-in's texts.

[[nodiscard]] inline Info makeInfo(const CommandRow& row)
{
    return Vu::makeInfo(row, kDomain);
}

template <class Self, class Base = CommandDefinition, class... Others>
using RowDefinition = Vu::RowDefinition<kDomain, Self, Base, Others...>;

template <class Self, class Cmd, class Base = CommandDefinition, class... Others>
using CommandRowDefinition = Vu::CommandRowDefinition<kDomain, Self, Cmd, Base, Others...>;

} // namespace Vu::Design
