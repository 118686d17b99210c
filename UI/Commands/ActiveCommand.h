#pragma once

namespace Vu {
class AssetSession;
class CommandBase;
} // namespace Vu

namespace Vu::Commands {

/// The session's active command; null without one, or without a session.
CommandBase* activeCommandOf(AssetSession* session);

/// Tells whoever shows the session's document that it is to be shown anew. Without a document, nobody.
void tellDocumentUpdated(const AssetSession& session);

} // namespace Vu::Commands
