// The widgets of the macro forms.

#include "UI/Base/Program/Application.h"
#include "UI/Commands/Adaptations/QT/Macros/QTMacroForm.h"

namespace Vu::Commands {
namespace {

class QtMacroToolkit : public MacroForm::Toolkit
{
public:
    QtMacroToolkit() { MacroForm::toolkit(this); }
    ~QtMacroToolkit() override { MacroForm::toolkit(nullptr); }

    bool ask(const std::wstring& title, std::vector<MacroForm::Field>& fields,
             const MacroForm::Check& check) override
    {
        QTMacroForm form(title, fields, check, Application::get()->mainWidget());
        if (form.exec() != QDialog::Accepted)
            return false;
        fields = form.fields();
        return true;
    }
};

const QtMacroToolkit theToolkit;

} // namespace
} // namespace Vu::Commands
