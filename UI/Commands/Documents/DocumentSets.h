#pragma once

#include <set>

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// Every open document.
std::set<Vs::Document*> allDocuments();

/// Asks the document-management handlers whether these documents may close; they may ask the user, and save.
bool closingAgreed(const std::set<Vs::Document*>& documents);

} // namespace Vu::Commands
