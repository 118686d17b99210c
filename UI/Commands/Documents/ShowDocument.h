#pragma once

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// Whether the sessions of all of a document's assets enter the asset shell, or that of its active asset
/// alone.
enum class AllSessions { No, Yes };

/// Brings the document up in the active workspace's asset shell, which is made if need be. False if the
/// document has no active asset, that asset no session, or there is no workspace.
bool showDocument(Vs::Document* document, AllSessions all);

/// A minimised window comes back, so that what is about to be shown or asked can be seen.
void restoreWindow();

} // namespace Vu::Commands
