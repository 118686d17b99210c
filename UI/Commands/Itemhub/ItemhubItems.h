#pragma once

#include "Server/Itemhub/WebServices.h"

#include <string>

namespace Vu::Commands {

/// Operations on an item, used by lines and clicks. All may throw what ItemhubUtilities throws.
class ItemhubItems
{
public:
    using Attachment = Corvane::Itemstore::WebServices::Attachment;

    /// The design among the item's attachments; one without an address if there is none.
    [[nodiscard]] static Attachment designOf(int itemId);

    /// After the current event: opens the design of an item as a click does, which may ask about the shown
    /// document. Errors are reported by ItemhubUtilities::fireErrorMessage.
    static void openLater(int itemId);
};

} // namespace Vu::Commands
