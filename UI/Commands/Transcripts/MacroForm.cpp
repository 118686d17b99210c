#include "UI/Commands/Transcripts/MacroForm.h"

#include <algorithm>

namespace Vu::Commands {
namespace {

MacroForm::Toolkit* s_toolkit = nullptr;

bool isFilled(const MacroForm::Field& field)
{
    return !field.isRequired || !field.value.empty();
}

} // namespace

bool MacroForm::ask(const std::wstring& title, std::vector<Field>& fields, const Check& check)
{
    if (s_toolkit)
        return s_toolkit->ask(title, fields, check);
    return std::all_of(fields.begin(), fields.end(), isFilled) && (!check || check(fields).empty());
}

void MacroForm::toolkit(Toolkit* toolkit)
{
    s_toolkit = toolkit;
}

} // namespace Vu::Commands
