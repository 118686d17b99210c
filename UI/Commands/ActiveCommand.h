#pragma once

namespace Vu {
class AssetSession;
class CommandBase;
} // namespace Vu

namespace Vu::Commands {

/// The session's active command; null without one, or without a session.
CommandBase* activeCommandOf(AssetSession* session);

/// Notifies whoever shows the session's document to refresh it. Without a document, nobody.
void tellDocumentUpdated(const AssetSession& session);

} // namespace Vu::Commands
