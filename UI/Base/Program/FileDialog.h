#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Vs {
class Status;
}

namespace Vu {

class CommandContext;

/// Asks for file names. A filter is a list such as "STL Files (*.stl);;STEP File (*.stp *.step)"; within the
/// brackets patterns are separated by blanks or semicolons. Dialogs begin in the folder that was used last,
/// unless `initialPath` names another.
///
/// All answer false when the user cancelled. Where nobody can be asked (headless and test runs) they count as
/// cancelled, and a message says so; a command then adds `tellMissing` to its status, since a line of text
/// that did nothing must not count as well done. The transcriptable ones take the name from the context's
/// path argument if it is there, without any dialog.
class FileDialog
{
public:
    [[nodiscard]] static bool getFilenamesForOpen(const std::wstring& filter,
                                                  std::vector<std::wstring>& names,
                                                  const std::wstring& initialPath);
    [[nodiscard]] static bool getFilenameForOpen(const std::wstring& filter, std::wstring& name,
                                                 const std::wstring& initialPath);
    /// The name as it was typed, whichever filter was chosen.
    [[nodiscard]] static bool getFilenameForSave(const std::wstring& filter, std::wstring& name);
    /// A name without a suffix gets that of the filter. `name` may hold a proposal; its folder counts only if
    /// there is no `initialPath` and if somebody works there, which excludes the folder of recovery files.
    [[nodiscard]] static bool getFilenameForSaveAs(const std::wstring& filter, const std::wstring& caption,
                                                   std::wstring& name, const std::wstring& initialPath);
    /// With `forOpen` false the file need not exist.
    [[nodiscard]] static bool getTranscriptableFilename(const std::wstring& filter, std::wstring& name,
                                                        CommandContext* context, bool forOpen,
                                                        const std::wstring& initialPath);
    /// A name without a suffix gets that of the chosen filter. `name` may hold a proposal.
    [[nodiscard]] static bool getTranscriptableFilenameForSaveAs(const std::wstring& filter,
                                                                 const std::wstring& caption,
                                                                 std::wstring& name, CommandContext* context);
    /// For files that have a folder of their own, such as scripts: the dialog begins in `folder` until the
    /// person has chosen a file elsewhere, which is remembered under `key`, apart from the other dialogs.
    /// Transcriptable.
    [[nodiscard]] static bool getSpecialFilenameForOpen(const std::wstring& filter, std::wstring& name,
                                                        CommandContext* context, const std::wstring& folder,
                                                        const std::string& key, const std::wstring& caption);
    /// `name` may hold a proposal; `entry` is the filter's that is chosen at first.
    [[nodiscard]] static bool getFilenameForExport(const std::wstring& filter, const std::wstring& caption,
                                                   std::wstring& name, const std::wstring& initialPath,
                                                   const std::wstring& entry = {});

    /// Whether there is somebody to ask.
    [[nodiscard]] static bool canAsk();

    /// An error in `status` if a name was missing because nobody can be asked; nothing if a person cancelled.
    static void tellMissing(Vs::Status& status);

    /// What a dialog would be asked.
    struct Request
    {
        std::wstring filter;
        std::wstring caption;
        std::wstring initialPath; ///< Folder or proposed file.
        bool forOpen = true;
        bool several = false;
        bool asTyped = false; ///< A name to save under gets no suffix of the filter.
        std::wstring entry;   ///< Of the filter, chosen at first; if it isn't one, the first is.
    };
    /// Answers in place of a person; returns false for cancelled. Null removes it.
    using Responder = std::function<bool(const Request&, std::vector<std::wstring>& names)>;
    static void responder(Responder responder);
};

namespace FileDialogRules {

/// The filter as the system's dialogs take it: patterns separated by blanks, entries by ";;", no empty
/// entries.
[[nodiscard]] std::wstring dialogFilter(const std::wstring& filter);
/// The name with the first suffix of the filter's first entry, unless it has a suffix already.
[[nodiscard]] std::wstring withSuffix(const std::wstring& name, const std::wstring& filter);

} // namespace FileDialogRules

} // namespace Vu
