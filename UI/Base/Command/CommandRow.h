#pragma once

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandGroup.h"

#include <array>

namespace Vs {
class ImageSetResource;
}

namespace Vu {

/// One row of a family's table: everything about a command that is data. The behaviour stands in its classes.
struct CommandRow
{
    using Icon = Vs::ImageSetResource* (*)();
    using Group = const Vs::UniqueString* (*)();

    const wchar_t* key;             ///< The identifier; also the title's key, if that has none of its own.
    const char* title;              ///< The English default.
    const char* titleKey = nullptr; ///< In the string table.
    Icon icon = nullptr;
    const char* tooltip = nullptr;    ///< The English default.
    const char* tooltipKey = nullptr; ///< In the string table; null for the identifier with "Desc" behind it.
    const char* hotkey = nullptr;
    HotKeyBinding::EHotKeyMode hotkeyMode = HotKeyBinding::EHotKeyMode::Standard;
    std::array<Group, 3> groups = {}; ///< Joined in this order.
    bool readonly = false;
    bool reportable = true;
    bool scriptable = true;
    std::array<const wchar_t*, 10> arguments = {}; ///< The names of what it can be given at its start.
};

/// The identity record of a row, with its texts in the user's language, from the add-in's domain of the
/// string table.
[[nodiscard]] Info makeInfo(const CommandRow& row, const wchar_t* domain);

/// A definition made from the row `Self::kRow`, with its texts from the domain. Bases after the first are
/// event sites and handlers. An add-in has an alias of this with its own domain.
template <const wchar_t* const& kDomain, class Self, class Base = CommandDefinition, class... Others>
class RowDefinition : public Vs::Implements<Self, Base, Others...>
{
public:
    /// The same record at each call.
    static Info* info()
    {
        static Info record = makeInfo(Self::kRow, kDomain);
        return &record;
    }

    RowDefinition() : RowDefinition(info()) {}
    /// With an identity of its own, and everything else from the row.
    explicit RowDefinition(Info* identity) : Vs::Implements<Self, Base, Others...>(identity)
    {
        for (CommandRow::Group group : Self::kRow.groups)
            if (group)
                this->joinCommandGroup(group());
        this->readonly(Self::kRow.readonly);
        this->reportable(Self::kRow.reportable);
        this->scriptable(Self::kRow.scriptable);
    }
};

/// The same for a command that is made for each run.
template <const wchar_t* const& kDomain, class Self, class Cmd, class Base = CommandDefinition,
          class... Others>
class CommandRowDefinition : public RowDefinition<kDomain, Self, Base, Others...>
{
public:
    using RowDefinition<kDomain, Self, Base, Others...>::RowDefinition;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override
    {
        return new Cmd(static_cast<Self*>(this), context);
    }
};

/// Shared answer of definitions that need an asset session.
bool hasAssetSession(const CommandContext* context);

} // namespace Vu
