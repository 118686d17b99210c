#pragma once

namespace Vu::Commands {

/// What the program has to do with the lifecycle service beside the commands: what its client's threads find
/// out reaches the main thread, what it tells becomes notifications, the favourites are kept up to date, and
/// the edition has its say. An item's file is shown by the item (FilePlace): "Itemhub \u203a item 17". Main
/// thread only.
class ItemhubDocuments
{
public:
    /// At the start of the add-in, and at its end.
    static void install();
    static void uninstall();
};

} // namespace Vu::Commands
