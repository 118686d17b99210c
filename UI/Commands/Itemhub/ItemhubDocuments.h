#pragma once

namespace Vu::Commands {

/// The program's connections to the lifecycle service apart from the commands: results of its client's
/// threads reach the main thread, its messages become notifications, the favourites are kept up to date, and
/// the edition's settings apply. An item's file is shown by its item (FilePlace): "Itemhub \u203a item 17".
/// Main thread only.
class ItemhubDocuments
{
public:
    /// Called at the start and at the end of the add-in.
    static void install();
    static void uninstall();
};

} // namespace Vu::Commands
