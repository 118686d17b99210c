#pragma once

#include "Server/Base/UniqueString.h"

namespace Vu {

class Info;
class MenuItem;
class ToolTipInfo;

/// The handler behind a control: told what the user does with it.
class IInputControlHandler
{
public:
    virtual ~IInputControlHandler() = default;
    static const Vs::UniqueString* interfaceId()
    {
        static const Vs::UniqueString* const id = Vs::UniqueString::find("Vu::IInputControlHandler");
        return id;
    }

    /// Queries what is behind the handler, as of any Vs::Interface; a class that is also a Vs::Object answers
    /// both with one function.
    virtual const Vs::UniqueString* getInterfaceId() const = 0;
    virtual void* queryInterface(const Vs::UniqueString* key) const = 0;

    virtual void onValueChanged() {}
    virtual void onHoverStart() {}
    virtual void onHoverEnd() {}
    /// The tooltip is about to be shown; the handler may change its texts.
    virtual void onUpdateTooltip(ToolTipInfo&) {}
};

class IButtonControlHandler : public IInputControlHandler
{
public:
    static const Vs::UniqueString* interfaceId()
    {
        static const Vs::UniqueString* const id = Vs::UniqueString::find("Vu::IButtonControlHandler");
        return id;
    }

    virtual void onClicked() = 0;
};

class IListControlHandler : public IInputControlHandler
{
public:
    static const Vs::UniqueString* interfaceId()
    {
        static const Vs::UniqueString* const id = Vs::UniqueString::find("Vu::IListControlHandler");
        return id;
    }

    /// `item` is the item that is selected now; null if none is.
    virtual void onListSelectionChanged(Info* item) = 0;
};

class IMenuControlHandler : public IInputControlHandler
{
public:
    static const Vs::UniqueString* interfaceId()
    {
        static const Vs::UniqueString* const id = Vs::UniqueString::find("Vu::IMenuControlHandler");
        return id;
    }

    /// `item` is the item whose mark changed; null tells that several may have.
    virtual void onMenuSelectionChanged(MenuItem* item) = 0;
};

} // namespace Vu
