#pragma once

#include "Server/Base/Object.h"

namespace Vu {

class Info;
class MenuItem;
class ToolTipInfo;

/// Who stands behind a control: told of what the user does with it.
class IInputControlHandler : public Vs::Interface
{
public:
    static const Vs::UniqueString* interfaceId();

    virtual void onValueChanged() {}
    virtual void onHoverStart() {}
    virtual void onHoverEnd() {}
    /// The tooltip is about to be shown; the handler may change its texts.
    virtual void onUpdateTooltip(ToolTipInfo&) {}
};

class IButtonControlHandler : public IInputControlHandler
{
public:
    static const Vs::UniqueString* interfaceId();

    virtual void onClicked() = 0;
};

class IListControlHandler : public IInputControlHandler
{
public:
    static const Vs::UniqueString* interfaceId();

    /// `item` is the item that is selected now; null if none is.
    virtual void onListSelectionChanged(Info* item) = 0;
};

class IMenuControlHandler : public IInputControlHandler
{
public:
    static const Vs::UniqueString* interfaceId();

    /// `item` is the item whose mark changed; null tells that several may have.
    virtual void onMenuSelectionChanged(MenuItem* item) = 0;
};

} // namespace Vu
