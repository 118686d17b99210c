#pragma once

#include "Server/Base/Event.h"
#include "UI/Base/Command/InputControlHandler.h"

#include <vector>

namespace Vu {

class InputControl;

/// Listens to one control, to draw it.
class InputControlSite : public Vs::EventSite
{
public:
    /// Title, icon, state, items or selection changed.
    virtual void inputControlChanged(InputControl*) {}
    /// The control is being destroyed; a site needn't unsubscribe any more.
    virtual void inputControlDestroyed(InputControl*) {}
};

/// A control without a widget: what a toolbar, a menu or a panel draws. It holds the state; whoever draws it
/// subscribes as a site. Main thread only.
class InputControl : public Vs::Implements<InputControl>
{
public:
    /// Neither is owned; both must outlive the control. The handler may be null.
    InputControl(Info* info, IInputControlHandler* handler);
    ~InputControl() override;

    Info* info() const { return m_info; }
    /// Another record, or the same one with another look.
    void info(Info* info);
    IInputControlHandler* handler() const { return m_handler; }

    bool enabled() const { return m_enabled; }
    void enabled(bool value);
    bool visible() const { return m_visible; }
    void visible(bool value);

    /// Whether what the control stands for is active, which highlights it. Default false.
    bool active() const { return m_active; }
    void active(bool value);

    void subscribe(InputControlSite* site) { m_source.subscribe(site); }
    void unsubscribe(InputControlSite* site) { m_source.unsubscribe(site); }

    /// The user's actions, reported by the drawing side.
    void hoverStart();
    void hoverEnd();
    ToolTipInfo tooltip() const;

protected:
    void changed();

private:
    class Source : public Vs::EventSource<InputControlSite>
    {
    public:
        using Vs::EventSource<InputControlSite>::forEach;
    };

    Info* m_info;
    IInputControlHandler* m_handler;
    Source m_source;
    bool m_enabled = true;
    bool m_visible = true;
    bool m_active = false;
};

class ButtonControl : public Vs::Implements<ButtonControl, InputControl>
{
public:
    ButtonControl(Info* info, IButtonControlHandler* handler);

    bool checked() const { return m_checked; }
    void checked(bool value);

    /// The user's click. Does nothing while the button is disabled.
    void clicked();

private:
    IButtonControlHandler* m_buttonHandler;
    bool m_checked = false;
};

/// A button with a drop-down list of items, one of which may be selected.
class ListControl : public Vs::Implements<ListControl, InputControl>
{
public:
    /// The key of an item that is only a separator.
    static constexpr const wchar_t* kSeparator = L"eSeparator";

    ListControl(Info* info, IListControlHandler* handler);
    /// The caller owns the control.
    [[nodiscard]] static ListControl* make(Info* info, IListControlHandler* handler);

    const std::vector<Info*>& items() const { return m_items; }
    /// New items, which are not owned. The old ones are not deleted; a selection that is no longer among the
    /// items is dropped.
    void items(std::vector<Info*> items);

    Info* selectedItem() const { return m_selected; }
    /// Selects an item of the list, or none with null. With `notify` the handler is notified, even if it was
    /// already selected: choosing an entry again is a choice.
    void selectedItem(Info* item, bool notify);

    /// Whether the button shows the selected item's title and icon in place of its own.
    bool synchronizedWithCurrentItem() const { return m_synchronized; }
    void synchronizedWithCurrentItem(bool value);

    /// Whether the button does something by itself (`clicked`), and only an arrow beside it opens the list.
    /// Default false: all of the button opens it.
    bool split() const { return m_split; }
    void split(bool value);
    /// The user's click on a split button: chooses the selected item again. Where none is selected, the
    /// handler is told of the control's own record. Does nothing while the button is disabled.
    void clicked();

private:
    IListControlHandler* m_listHandler;
    std::vector<Info*> m_items;
    Info* m_selected = nullptr;
    bool m_synchronized = false;
    bool m_split = false;
};

class MenuItem
{
public:
    /// The record is not owned.
    explicit MenuItem(Info* info) : m_info(info) {}

    Info* info() const { return m_info; }
    bool checked() const { return m_checked; }
    void checked(bool value) { m_checked = value; }
    bool enabled() const { return m_enabled; }
    void enabled(bool value) { m_enabled = value; }
    bool separator() const { return m_separator; }
    void separator(bool value) { m_separator = value; }

private:
    Info* m_info;
    bool m_checked = false;
    bool m_enabled = true;
    bool m_separator = false;
};

/// A button with a menu of items, each with a mark of its own.
class MenuControl : public Vs::Implements<MenuControl, InputControl>
{
public:
    enum class EPresentationStyle {
        DropDown = 0, ///< A button that opens the menu.
        Buttons = 1,  ///< The items side by side, each a button.
    };

    MenuControl(Info* info, IMenuControlHandler* handler);
    /// The caller owns the control.
    [[nodiscard]] static MenuControl* make(Info* info, IMenuControlHandler* handler);

    const std::vector<MenuItem*>& items() const { return m_items; }
    /// New items, which are not owned; the old ones are not deleted.
    void items(std::vector<MenuItem*> items);

    /// Sets an item's mark. With `notify` the handler is told of the item.
    void selectItem(MenuItem* item, bool checked, bool notify);
    /// Tells the handler that several marks may have changed.
    void selectItemNotification();
    void enableItem(MenuItem* item, bool enabled);

    EPresentationStyle presentationStyle() const { return m_style; }
    void presentationStyle(EPresentationStyle style);

private:
    bool holds(const MenuItem* item) const;

    IMenuControlHandler* m_menuHandler;
    std::vector<MenuItem*> m_items;
    EPresentationStyle m_style = EPresentationStyle::DropDown;
};

} // namespace Vu
