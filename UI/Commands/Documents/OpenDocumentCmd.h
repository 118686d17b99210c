#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <string>
#include <vector>

namespace Vs {
class DocumentMgr;
class Translator;
class TranslatorFileRecognizer;
} // namespace Vs

namespace Vu::Commands {

class OpenDocumentCmd;

/// Opens files, native or foreign. Also shows the documents that the platform opens on its own.
class OpenDocumentCmdDef : public CommandRowDefinition<OpenDocumentCmdDef, OpenDocumentCmd, CommandDefinition,
                                                       Vs::DocumentEventSite>
{
public:
    static const CommandRow kRow;

    OpenDocumentCmdDef();

    void documentOpenedInBackground(Vs::DocumentEvent* event) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;

private:
    Vs::Subscriptions m_subscriptions;
};

/// The only place that turns a file into a document that the user sees. On success it replaces the previously
/// current document, which is closed without asking.
class OpenDocumentCmd : public Vs::Implements<OpenDocumentCmd, SimpleCommand>
{
public:
    OpenDocumentCmd(OpenDocumentCmdDef* definition, CommandContext* context);
    /// The file dialog's filter: all supported files, then the native types, then the foreign formats.
    static std::wstring getFilterValues(Vs::DocumentMgr* manager, Vs::TranslatorFileRecognizer* recognizer);

    /// Opens a foreign file. Errors are added to the status; the current document then stays.
    static void translatorOpen(Vs::Translator* translator, const std::wstring& path, Vs::Status& status);

    /// Opens a native file, or brings up the open document of that path. A failure is shown to the user, and
    /// the status is marked as reported.
    static void openDocument(const std::wstring& path, Vs::Status& status, const std::string& cloudId);

    /// Opens one file of any kind. The cloud identifier is used for native files only.
    static void OpenSingleFile(const std::wstring& path, Vs::Status& status, const std::string& cloudId);

    /// Opens several native files, side by side if the user's options say so.
    static void openDocuments(const std::vector<std::wstring>& paths, Vs::Status& status,
                              const std::string& cloudId);

protected:
    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;

private:
    void openSeveral(const Vs::TranslatorFileRecognizer& recognizer, const std::wstring& filter,
                     Vs::Status& status);
    void openOne(const Vs::TranslatorFileRecognizer& recognizer, const std::wstring& filter,
                 Vs::Status& status);
};

} // namespace Vu::Commands
