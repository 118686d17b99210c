#pragma once

#include "Server/DataModel/Measure/MeasureMgr.h"
#include "UI/Base/Command/ColourCommandInput.h"
#include "UI/Base/Command/ControlCommandInputs.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/SelectionCommandInput.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace Vu::Design {

/// Creates the inputs of an editing command, in the order in which the user fills them in. Each has a key, by
/// which lines and context arguments name it, and a title in the user's language.
class EditInputs
{
public:
    explicit EditInputs(CommandInputSet* set) : m_set(set) {}

    /// Accepts things of any of these kinds; exactly one, or any number.
    SelectionCommandInput* things(const wchar_t* key, const std::wstring& title,
                                  std::initializer_list<Vs::ESelectionType> kinds, bool one = false);
    /// In mm; shown in the user's unit.
    RealValueCommandInput* length(const wchar_t* key, const std::wstring& title, double value);
    /// In radians; shown in degrees.
    RealValueCommandInput* angle(const wchar_t* key, const std::wstring& title, double value);
    IntegerValueCommandInput* count(const wchar_t* key, const std::wstring& title, int value);
    ColourCommandInput* colour(const wchar_t* key, const std::wstring& title);
    BoolValueCommandInput* choice(const wchar_t* key, const std::wstring& title, bool value);

    struct Item
    {
        const wchar_t* key;
        std::wstring title;
    };
    /// The first item is chosen.
    ListCommandInput* list(const wchar_t* key, const std::wstring& title, std::initializer_list<Item> items);

private:
    CommandInputSet* m_set;
    int m_number = 0;
};

/// The objects in the input, in the order in which they were added.
std::vector<Vs::ObjectPath> pathsOf(const SelectionCommandInput& input);
/// The components of these.
std::vector<std::string> componentsOf(const SelectionCommandInput& input);

} // namespace Vu::Design
