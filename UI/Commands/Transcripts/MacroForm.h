#pragma once

#include <functional>
#include <string>
#include <vector>

/// What a person fills in before a macro is recorded or played. Main thread only.
namespace Vu::Commands::MacroForm {

struct Field
{
    std::wstring name;
    std::wstring value; ///< What it holds at first, and what the person has made of it.
    bool isRequired = false;
};

/// Why the fields can't be taken as they are, as a sentence for the person; empty if they can.
using Check = std::function<std::wstring(const std::vector<Field>& fields)>;

/// False if the person cancelled, or if nobody is there to ask and a field that is required has no value.
[[nodiscard]] bool ask(const std::wstring& title, std::vector<Field>& fields, const Check& check = {});

/// What the add-in's widgets bring when they are loaded.
class Toolkit
{
public:
    virtual ~Toolkit() = default;
    virtual bool ask(const std::wstring& title, std::vector<Field>& fields, const Check& check) = 0;
};
/// Not owned; null takes it away.
void toolkit(Toolkit* toolkit);

} // namespace Vu::Commands::MacroForm
