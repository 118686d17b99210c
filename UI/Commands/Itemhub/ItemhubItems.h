#pragma once

#include "Server/Itemhub/WebServices.h"

#include <string>

namespace Vu::Commands {

/// What can be done with an item, by a line or a click. All may throw what ItemhubUtilities throws.
class ItemhubItems
{
public:
    using Attachment = Corvane::Itemstore::WebServices::Attachment;

    /// The design among the item's attachments; one without an address if it has none.
    [[nodiscard]] static Attachment designOf(int itemId);

    /// Behind the current event: opens the design of an item as a click does, which may ask about the shown
    /// document. What is wrong is told by ItemhubUtilities::fireErrorMessage.
    static void openLater(int itemId);
};

} // namespace Vu::Commands
