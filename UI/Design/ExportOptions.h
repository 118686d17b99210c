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

/// What an export is asked for, as the arguments of its command and as the dialog have it.
struct ExportOptions
{
    /// "coarse", "fine", or four numbers separated by commas (VeloraExportCmdDef); empty for the triangles
    /// that are shown.
    std::wstring refinement;
    std::string unit; ///< LengthUnit::key; empty for millimetres.
    Vs::UpAxis upAxis = Vs::UpAxis::Usual;
    bool hiddenToo = false;
    bool selectedOnly = false;
    bool separate = false; ///< One file for each part.
    bool combine = false;
    bool displayUnit = false;
    bool asText = false;

    /// Adds an error for each argument that can't be meant.
    static ExportOptions read(CommandContext& context, Vs::Status& status);
    /// The same as arguments, for whoever runs the command again.
    void write(CommandContext& context) const;

    /// Why a format can't be written so; empty if it can.
    [[nodiscard]] std::wstring refusal(const Vs::Translator& translator) const;
    /// For all that is asked for: `TranslatorSaveOptions::components` are what is selected, if only that is.
    void apply(Vs::TranslatorSaveOptions& options) const;
};

/// The numbers behind a refinement's text; false, with an error, if it is none.
bool readRefinement(const std::wstring& text, Vs::TranslatorRefinement& refinement, Vs::Status& status);

/// What is selected, as ids of components; of a face or an edge, the component that has it.
[[nodiscard]] std::vector<std::string> selectedComponents();

/// A part that gets a file of its own.
struct ExportedPart
{
    std::string id;
    std::wstring name;
};
/// All that show a body and are wanted, in the order of the tree.
[[nodiscard]] std::vector<ExportedPart> partsToExport(const Vs::Asset& asset, const ExportOptions& options);

/// The files of those parts: the name of each, as a file can have it, behind that of the whole, and no name
/// twice.
[[nodiscard]] std::vector<std::wstring> filesOfParts(const std::wstring& path,
                                                     const std::vector<ExportedPart>& parts);

/// Asks a person for the options of a file; false to cancel. Keeps them as they are where nobody can be
/// asked.
bool askExportOptions(Vs::Asset& asset, const Vs::Translator& translator, const std::wstring& path,
                      ExportOptions& options);
/// Who asks: the add-in's widgets set it when their library is opened.
using ExportOptionsAsker = bool (*)(Vs::Asset&, const Vs::Translator&, const std::wstring& path,
                                    ExportOptions&);
void exportOptionsAsker(ExportOptionsAsker asker);

} // namespace Vu::Design
