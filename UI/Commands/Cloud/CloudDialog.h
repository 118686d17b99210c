#pragma once

#include "Server/Skyvault/SkyvaultNodeData.h"

#include <functional>
#include <string>

namespace Vs {
class Status;
}

namespace Vu::Commands {

/// Lets a person choose a place on the cloud drive: a tree that is read folder by folder. The widgets'
/// library installs what asks. All answer false when the person cancelled. Where nobody can be asked
/// (headless and test runs) they count as cancelled; a command then adds `tellMissing` to its status, since a
/// line of text that did nothing must not count as well done. Main thread only.
class CloudDialog
{
public:
    /// A folder, which `node` is then, with its children.
    [[nodiscard]] static bool SelectFolder(Vs::SkyvaultNodeData& node);
    /// A folder and the name of a file in it. `name` holds a proposal, and the chosen name afterwards, with
    /// `extension` (".vlra") if the person typed none; `node` is the folder, with its children. Whether the
    /// file exists is asked by the caller.
    [[nodiscard]] static bool SelectSaveAsFileName(Vs::SkyvaultNodeData& node, std::wstring& name,
                                                   const std::wstring& filter, std::wstring& extension);
    /// A file of the filter, which is that of FileDialog; with `foldersToo`, folders can be chosen as well.
    [[nodiscard]] static bool SelectCloudDocument(Vs::SkyvaultNodeData& node, const std::wstring& filter,
                                                  bool foldersToo);

    /// Whether there is somebody to ask.
    [[nodiscard]] static bool canAsk();
    /// An error in `status` if nobody can be asked; nothing if a person cancelled.
    static void tellMissing(Vs::Status& status);

    enum class Kind { Folder, SaveAs, Document };
    struct Request
    {
        Kind kind = Kind::Folder;
        std::wstring filter;
        std::wstring extension; ///< Of SaveAs alone.
        bool foldersToo = false;
    };
    /// Asks, and returns whether somebody chose. `name` is a proposal, and the chosen name, of SaveAs alone.
    using Asker = std::function<bool(const Request&, Vs::SkyvaultNodeData& node, std::wstring& name)>;
    /// For the widgets' library; null removes it.
    static void asker(Asker asker);
    /// Answers in place of a person; null takes it away.
    static void responder(Asker responder);
};

/// Texts that commands and dialogs of the cloud drive share.
class QTSkyvaultUtilities
{
public:
    /// The question whether a file of the name that is put for "%1" is to be replaced.
    [[nodiscard]] static std::wstring sFileExists();
    /// The same with the name.
    [[nodiscard]] static std::wstring sFileExists(const std::wstring& name);
};

} // namespace Vu::Commands
