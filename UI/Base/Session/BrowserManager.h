#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <vector>

namespace Vu {

class AssetSession;

/// Shows the objects of a session as a tree. Registers itself with BrowserManager.
class Browser : public Vs::Implements<Browser>
{
public:
    Browser();
    ~Browser() override;

    /// The session whose objects it shows; null while there is none.
    virtual const AssetSession* assetSession() const = 0;
    /// Makes the entry of the object, or of the component to which it belongs, with everything that contains
    /// it, and scrolls it into view, marked as the current one. The browser is shown from then on, if the
    /// window's layout has room for it. What is selected stays selected. Nothing happens if it has no such
    /// object.
    virtual void createAndDisplay(const Vs::StrongRef<Vs::LogicalSelection>& selection) = 0;
};

/// All browsers. Main thread only.
class BrowserManager : public Vs::Implements<BrowserManager>
{
public:
    static BrowserManager* get();

    /// The browser that shows the session; null if none does.
    [[nodiscard]] Browser* browserToAssetSession(const AssetSession* session) const;

private:
    friend class Browser;
    std::vector<Browser*> m_browsers;
};

} // namespace Vu
