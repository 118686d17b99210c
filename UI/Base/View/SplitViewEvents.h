#pragma once

#include "Server/Base/Event.h"

#include <string>

namespace Vu {

class GraphicsView;

class SplitViewEvent : public Vs::Implements<SplitViewEvent, Vs::Event>
{
public:
    explicit SplitViewEvent(GraphicsView* view) : m_view(view) {}
    GraphicsView* view() const { return m_view; }

private:
    GraphicsView* m_view;
};

/// Each operation does nothing unless overridden.
class SplitViewEventSite : public Vs::EventSite
{
public:
    virtual void splitViewActivate(SplitViewEvent*) {}
    virtual void splitViewDeactivate(SplitViewEvent*) {}
    virtual void splitViewUnbindView(SplitViewEvent*) {}
    virtual void splitViewBindView(SplitViewEvent*) {}
};

class SplitViewEventSource : public Vs::EventSource<SplitViewEventSite>
{
public:
    static SplitViewEventSource* get()
    {
        static auto* const source = new SplitViewEventSource;
        return source;
    }

    void fireSplitViewActivate(SplitViewEvent* event) { fire(&SplitViewEventSite::splitViewActivate, event); }
    void fireSplitViewDeactivate(SplitViewEvent* event)
    {
        fire(&SplitViewEventSite::splitViewDeactivate, event);
    }
    void fireSplitViewUnbindView(SplitViewEvent* event)
    {
        fire(&SplitViewEventSite::splitViewUnbindView, event);
    }
    void fireSplitViewBindView(SplitViewEvent* event) { fire(&SplitViewEventSite::splitViewBindView, event); }
};

/// A shell whose layout has several forms.
class ISplitViewArrangement
{
public:
    virtual ~ISplitViewArrangement() = default;
    static const Vs::UniqueString* interfaceId()
    {
        static const Vs::UniqueString* const id = Vs::UniqueString::find("Vu::ISplitViewArrangement");
        return id;
    }

    virtual void updateArrangement(const std::wstring& filter) = 0;
    virtual std::wstring arrangementFilter() const = 0;
};

} // namespace Vu
