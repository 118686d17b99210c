#include "UI/Base/Command/Private/RecentValues.h"

#include "Server/Base/OptionGroup.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"

namespace Vu::RecentValues {

namespace {

constexpr size_t kKept = 8;

Vs::OptionGroup& options()
{
    static auto* const group = new Vs::OptionGroup("RecentValues");
    return *group;
}

std::string keyOf(const CommandInputBase& input)
{
    const CommandDefinition* definition = input.commandInputSet()->command()->commandDefinition();
    return Vs::Strings::narrow((definition ? definition->id() : std::wstring()) + L"." + input.info()->key());
}

} // namespace

std::vector<std::wstring> of(const CommandInputBase& input)
{
    return options().value(keyOf(input).c_str(), std::vector<std::wstring>());
}

void add(const CommandInputBase& input, const std::wstring& text)
{
    std::vector<std::wstring> texts = of(input);
    std::erase(texts, text);
    texts.insert(texts.begin(), text);
    if (texts.size() > kKept)
        texts.resize(kKept);
    options().setValue(keyOf(input).c_str(), texts);
}

} // namespace Vu::RecentValues
