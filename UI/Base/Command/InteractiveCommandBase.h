#pragma once

#include "Server/Base/StrongRef.h"
#include "UI/Base/Command/CommandBase.h"

namespace Vs {
class Selection;
class SelectionFilterContext;
} // namespace Vs

namespace Vu {

class GraphicsView;
class KeyEvent;

/// Handles the keys that nothing else handled.
class IKeyEventHandler
{
public:
    static const Vs::UniqueString* interfaceId();
    virtual ~IKeyEventHandler() = default;
    virtual void keyPress(KeyEvent* event) = 0;
    virtual void keyRelease(KeyEvent* event) = 0;
};

/// A command that stays active, and takes mouse, key and selection events, until it is destroyed.
class InteractiveCommandBase : public Vs::Implements<InteractiveCommandBase, CommandBase, IKeyEventHandler>
{
public:
    /// The view of the command's session; may be null.
    GraphicsView* graphicsView() const;

    /// Whether the selection may be used while this command is active. Default true.
    virtual bool onFilterSelection(const Vs::StrongRef<Vs::Selection>& selection,
                                   const Vs::SelectionFilterContext* context);
    virtual void onActiveManipulatorChanged() {}
    /// By default, Escape cancels the command.
    virtual void onKeyPress(KeyEvent* event);
    virtual void onKeyRelease(KeyEvent*) {}
    virtual void onForcePreviewAfterSkippedCycle() {}

    void keyPress(KeyEvent* event) override;
    void keyRelease(KeyEvent* event) override;

protected:
    using Implements::Implements;
};

} // namespace Vu
