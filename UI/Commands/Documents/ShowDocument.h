#pragma once

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// Whether the sessions of all of a document's assets enter the asset shell, or only that of its active
/// asset.
enum class AllSessions { No, Yes };

/// Shows the document in the active workspace's asset shell, which is created if needed. False if the
/// document has no active asset, that asset no session, or there is no workspace.
bool showDocument(Vs::Document* document, AllSessions all);

/// Restores a minimized window, so that what is about to be shown or asked can be seen.
void restoreWindow();

} // namespace Vu::Commands
