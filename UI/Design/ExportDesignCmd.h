#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Design/CommandRow.h"
#include "UI/Design/ExportOptions.h"

namespace Vs {
class TranslatorFileRecognizer;
}

namespace Vu::Design {

/// Writes the active design as a file of any format that a translator writes; the name's suffix chooses.
class VeloraExportCmdDef : public RowDefinition<VeloraExportCmdDef>
{
public:
    static constexpr const wchar_t* kKey = L"VeloraExportCommand";

    static const CommandRow kRow;

    /// Integers, all optional. Non-zero: all parts are written as one.
    static const Vs::UniqueString* combineArgumentName();
    /// Non-zero: lengths are written in the unit in which they are shown, where the format has any choice.
    static const Vs::UniqueString* displayUnitArgumentName();
    /// Non-zero: what is hidden is written as well.
    static const Vs::UniqueString* hiddenTooArgumentName();
    /// Non-zero: only what is selected is written.
    static const Vs::UniqueString* selectedOnlyArgumentName();
    /// Non-zero: each part becomes a file of its own, with its name behind that of the path.
    static const Vs::UniqueString* separateArgumentName();
    /// Non-zero: as text, where the format has a binary form as well.
    static const Vs::UniqueString* asTextArgumentName();
    /// A text: the key of a unit of length, "mm" for one.
    static const Vs::UniqueString* unitArgumentName();
    /// A text: "y" or "z", the axis that points upwards in the file.
    static const Vs::UniqueString* upAxisArgumentName();
    /// A text: "coarse", "fine", or the four numbers of Vs::TranslatorRefinement, separated by commas; what
    /// is left out at the end stays as usual.
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
    /// Asks for what the arguments don't say; false if there is nothing to be done.
    bool ask(Vs::Asset& asset, const Vs::TranslatorFileRecognizer& recognizer, Vs::Status& status);
    bool mayReplace(const std::vector<std::wstring>& files) const;
    void writeParts(Vs::Asset& asset, Vs::Status& status);
    /// Of the components with these ids, or of all that are asked for.
    bool write(Vs::Asset& asset, const std::wstring& path, const std::vector<std::string>& components,
               Vs::Status& status);

    std::wstring m_path;
    ExportOptions m_options;
    Vs::Translator* m_translator = nullptr;
    bool m_asked = false;
};

} // namespace Vu::Design
