#pragma once

#include "UI/Base/Command/Info.h"

namespace Vu::Design {

/// What one of the add-in's commands is called and looks like: a row of its family's table.
struct CommandLook
{
    const wchar_t* key; ///< Also of the title; with "Desc" behind it, of the tooltip.
    const char* title;
    const char* tooltip = nullptr;             ///< Null for none.
    Vs::ImageSetResource* (*icon)() = nullptr; ///< Null for none.
    const char* hotkey = "";
};

/// The command's record, with title and tooltip in the user's language.
[[nodiscard]] Info makeInfo(const CommandLook& look);

} // namespace Vu::Design
