#pragma once

#include "Server/DataModel/Translator.h"

#include <string>
#include <vector>

namespace Vs {
class Asset;
class UniqueString;
} // namespace Vs

namespace Vu {
class CommandContext;
}

namespace Vu::Design {

/// The options of an export, as the arguments of its command and in the dialog.
struct ExportOptions
{
    /// "coarse", "fine", or four numbers separated by commas (VeloraExportCmdDef); empty for the displayed
    /// triangles.
    std::wstring refinement;
    std::string unit; ///< LengthUnit::key; empty for millimetres.
    Vs::UpAxis upAxis = Vs::UpAxis::Usual;
    bool hiddenToo = false;
    bool selectedOnly = false;
    bool separate = false; ///< One file for each part.
    bool combine = false;
    bool displayUnit = false;
    bool asText = false;

    /// Adds an error for each invalid argument.
    static ExportOptions read(CommandContext& context, Vs::Status& status);
    /// The same as arguments, for running the command again.
    void write(CommandContext& context) const;

    /// Why a format can't be written like this; empty if it can.
    [[nodiscard]] std::wstring refusal(const Vs::Translator& translator) const;
    /// For everything requested: `TranslatorSaveOptions::components` is the selection, if only that is
    /// exported.
    void apply(Vs::TranslatorSaveOptions& options) const;
};

/// The numbers of a refinement's text; false, with an error, if it is invalid.
bool readRefinement(const std::wstring& text, Vs::TranslatorRefinement& refinement, Vs::Status& status);

/// The selection as ids of components; for a face or an edge, the component that has it.
[[nodiscard]] std::vector<std::string> selectedComponents();

/// A part that gets a file of its own.
struct ExportedPart
{
    std::string id;
    std::wstring name;
};
/// All requested components that show a body, in tree order.
[[nodiscard]] std::vector<ExportedPart> partsToExport(const Vs::Asset& asset, const ExportOptions& options);

/// The files of those parts: the name of each, made valid for a file, appended to that of the whole, without
/// duplicates.
[[nodiscard]] std::vector<std::wstring> filesOfParts(const std::wstring& path,
                                                     const std::vector<ExportedPart>& parts);

/// Asks the user for the options of a file; false to cancel. Leaves them unchanged if nobody can be asked.
bool askExportOptions(Vs::Asset& asset, const Vs::Translator& translator, const std::wstring& path,
                      ExportOptions& options);
/// The function that asks: set by the add-in's widgets when their library is loaded.
using ExportOptionsAsker = bool (*)(Vs::Asset&, const Vs::Translator&, const std::wstring& path,
                                    ExportOptions&);
void exportOptionsAsker(ExportOptionsAsker asker);

} // namespace Vu::Design
