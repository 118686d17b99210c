#pragma once

#include <functional>
#include <string>
#include <vector>

/// What the user fills in before a macro is recorded or played. Main thread only.
namespace Vu::Commands::MacroForm {

struct Field
{
    std::wstring name;
    std::wstring value; ///< The initial value, and what the user has changed it to.
    bool isRequired = false;
};

/// Why the fields can't be accepted, as a sentence for the user; empty if they can.
using Check = std::function<std::wstring(const std::vector<Field>& fields)>;

/// False if the user cancelled, or if there is nobody to ask and a required field has no value.
[[nodiscard]] bool ask(const std::wstring& title, std::vector<Field>& fields, const Check& check = {});

/// Set by the add-in's widgets when they are loaded.
class Toolkit
{
public:
    virtual ~Toolkit() = default;
    virtual bool ask(const std::wstring& title, std::vector<Field>& fields, const Check& check) = 0;
};
/// Not owned; null removes it.
void toolkit(Toolkit* toolkit);

} // namespace Vu::Commands::MacroForm
