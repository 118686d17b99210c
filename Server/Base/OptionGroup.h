#pragma once

#include "Server/Base/Event.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs {

class OptionGroup;
class Tasks;

/// Fired after an option got a new value.
class OptionEvent : public Implements<OptionEvent, Event>
{
public:
    OptionEvent(OptionGroup* group, const char* name)
        : Implements(Timing::After), m_group(group), m_name(name)
    {
    }
    OptionGroup* group() const { return m_group; }
    const std::string& name() const { return m_name; }

private:
    OptionGroup* m_group;
    std::string m_name;
};

class OptionEventSite : public EventSite
{
public:
    virtual void optionChanged(OptionEvent* event) = 0;
};

/// A group of the user's options, kept in one file of the options directory: a JSON object with a member for
/// each option that was set. Read at first use, written whenever an option changes; a file that cannot be
/// read counts as empty, with a warning, and is kept as `.broken` when the next one is written. Numbers that
/// JSON can't express (not-a-number, infinity) are not kept. Main thread only.
class OptionGroup : public Implements<OptionGroup>, public EventSource<OptionEventSite>
{
public:
    /// `name` is the file's name without its suffix, `.json`.
    explicit OptionGroup(std::string name);
    ~OptionGroup() override;

    const std::string& name() const;

    [[nodiscard]] bool value(const char* option, bool fallBack) const;
    [[nodiscard]] int value(const char* option, int fallBack) const;
    [[nodiscard]] double value(const char* option, double fallBack) const;
    [[nodiscard]] std::wstring value(const char* option, const std::wstring& fallBack) const;
    [[nodiscard]] std::vector<std::wstring> value(const char* option,
                                                  const std::vector<std::wstring>& fallBack) const;

    /// Keeps the value and notifies the sites, unless the option was already set to it.
    void setValue(const char* option, bool value);
    void setValue(const char* option, int value);
    void setValue(const char* option, double value);
    void setValue(const char* option, const std::wstring& value);
    void setValue(const char* option, const std::vector<std::wstring>& value);

    /// Restores the defaults; notifies the sites of each option that was set.
    void reset();

    /// Writes what has changed and isn't on the disk yet. The destructor does, too.
    void save();
    /// Lets all groups write their changes from a task of this queue, many changes at once; null makes each
    /// change write at once, as initially. The queue must exist until null is given.
    static void saveLater(Tasks* tasks);

    /// What is set while this lives holds until then: its destructor puts all options of the group back,
    /// those that were never set as well, and notifies the sites. Nothing of it is written, so that a run
    /// that ends suddenly leaves the user's options as they were.
    class Interlude
    {
    public:
        explicit Interlude(OptionGroup& group);
        ~Interlude();
        Interlude(const Interlude&) = delete;
        Interlude& operator=(const Interlude&) = delete;

    private:
        struct Before;
        OptionGroup& m_group;
        std::unique_ptr<Before> m_before;
    };

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

/// One typed option of a group: `Option<bool> analytics{*this, "analytics", false};` is read by `analytics()`
/// and set by `analytics(true)`.
template <class T>
class Option
{
public:
    Option(OptionGroup& group, const char* name, T fallBack)
        : m_group(group), m_name(name), m_fallBack(std::move(fallBack))
    {
    }
    T operator()() const { return m_group.value(m_name, m_fallBack); }
    /// Does nothing if the option already has that value, even by default.
    void operator()(const T& value)
    {
        if (!(value == (*this)()))
            m_group.setValue(m_name, value);
    }
    /// Its value as long as nobody has set it.
    const T& fallBack() const { return m_fallBack; }

private:
    OptionGroup& m_group;
    const char* m_name;
    T m_fallBack;
};

/// How several files are opened.
class MultiThreadOptionGroup : public Implements<MultiThreadOptionGroup, OptionGroup>
{
public:
    static MultiThreadOptionGroup* get();

    Option<bool> openMultipleFiles{*this, "openMultipleFiles",
                                   false};                        ///< The file dialog may select several.
    Option<bool> multiThreadLoad{*this, "multiThreadLoad", true}; ///< Several files load at the same time.

private:
    MultiThreadOptionGroup() : Implements("MultiThread") {}
};

} // namespace Vs
