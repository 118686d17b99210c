#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Design/CommandRow.h"
#include "UI/Design/ExportOptions.h"

namespace Vs {
class TranslatorFileRecognizer;
}

namespace Vu::Design {

/// Writes the active design as a file in any format that a translator can write, chosen by the name's suffix.
class VeloraExportCmdDef : public RowDefinition<VeloraExportCmdDef>
{
public:
    static constexpr const wchar_t* kKey = L"VeloraExportCommand";

    static const CommandRow kRow;

    /// Integers, all optional. Non-zero: all parts are written as one.
    static const Vs::UniqueString* combineArgumentName();
    /// Non-zero: lengths are written in the displayed unit, if the format supports a choice.
    static const Vs::UniqueString* displayUnitArgumentName();
    /// Non-zero: hidden parts are written as well.
    static const Vs::UniqueString* hiddenTooArgumentName();
    /// Non-zero: only the selection is written.
    static const Vs::UniqueString* selectedOnlyArgumentName();
    /// Non-zero: each part becomes a separate file, with its name appended to that of the path.
    static const Vs::UniqueString* separateArgumentName();
    /// Non-zero: as text, if the format also has a binary form.
    static const Vs::UniqueString* asTextArgumentName();
    /// A text: the key of a unit of length, such as "mm".
    static const Vs::UniqueString* unitArgumentName();
    /// A text: "y" or "z", the axis that points upwards in the file.
    static const Vs::UniqueString* upAxisArgumentName();
    /// A text: "coarse", "fine", or the four numbers of Vs::TranslatorRefinement, separated by commas;
    /// numbers left out at the end keep their defaults.
    static const Vs::UniqueString* refinementArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class VeloraExportCmd : public Vs::Implements<VeloraExportCmd, SimpleCommand>
{
protected:
    friend class VeloraExportCmdDef;
    VeloraExportCmd(VeloraExportCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;

private:
    /// Asks for what the arguments don't say; false if there is nothing to do.
    bool ask(Vs::Asset& asset, const Vs::TranslatorFileRecognizer& recognizer, Vs::Status& status);
    bool mayReplace(const std::vector<std::wstring>& files) const;
    void writeParts(Vs::Asset& asset, Vs::Status& status);
    /// For the components with these ids, or all requested ones.
    bool write(Vs::Asset& asset, const std::wstring& path, const std::vector<std::string>& components,
               Vs::Status& status);

    std::wstring m_path;
    ExportOptions m_options;
    Vs::Translator* m_translator = nullptr;
    bool m_asked = false;
};

} // namespace Vu::Design
