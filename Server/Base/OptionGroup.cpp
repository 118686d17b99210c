#include "Server/Base/OptionGroup.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OptionFile.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Task.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/operations.hpp>

#include <charconv>
#include <cmath>
#include <set>

namespace Vs {

namespace {

Tasks* s_saveLater = nullptr;

/// The groups that exist, so that a queued write can tell whether its group is still there. Never destroyed:
/// groups are statics that go in any order.
std::set<const OptionGroup*>& groups()
{
    static auto& all = *new std::set<const OptionGroup*>;
    return all;
}

template <class Number>
std::string numberText(Number value)
{
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return std::string(text, end);
}

template <class Number>
bool readNumber(std::string_view text, Number& value)
{
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && stop == text.data() + text.size();
}

std::string listText(const std::vector<std::wstring>& texts)
{
    std::string value;
    for (const std::wstring& text : texts)
        value += (value.empty() ? "" : " ") + OptionFile::quoted(text);
    return value;
}

} // namespace

struct OptionGroup::Data
{
    std::string name;
    OptionFile::Values values;
    bool read = false;
    bool broken = false; ///< The file cannot be read; it is kept aside before it is overwritten.
    bool changed = false;
    bool queued = false;

    boost::filesystem::path file() const { return PathInfo::optionsDirectory() / (name + ".ini"); }

    const std::string* find(const char* option)
    {
        load();
        const auto found = values.find(std::string_view(option));
        return found == values.end() ? nullptr : &found->second;
    }

    void load()
    {
        if (read)
            return;
        read = true;
        try {
            values = OptionFile::read(file());
        } catch (const Exception& error) {
            broken = true;
            warn(error.message());
        }
    }

    void save()
    {
        if (!changed)
            return;
        changed = false;
        try {
            boost::system::error_code ignored;
            if (std::exchange(broken, false))
                boost::filesystem::rename(file(), file().string() + ".broken", ignored);
            OptionFile::write(file(), values);
        } catch (const Exception& error) {
            warn(error.message());
        }
    }

    void saveSoon(const OptionGroup* group)
    {
        changed = true;
        if (!s_saveLater) {
            save();
        } else if (!std::exchange(queued, true)) {
            s_saveLater->post([this, group] {
                if (!groups().contains(group))
                    return;
                queued = false;
                save();
            });
        }
    }
};

OptionGroup::OptionGroup(std::string name) : m_data(std::make_unique<Data>())
{
    m_data->name = std::move(name);
    groups().insert(this);
}

OptionGroup::~OptionGroup()
{
    groups().erase(this);
    m_data->save();
}

const std::string& OptionGroup::name() const
{
    return m_data->name;
}

bool OptionGroup::value(const char* option, bool fallBack) const
{
    const std::string* text = m_data->find(option);
    return text && (*text == "true" || *text == "false") ? *text == "true" : fallBack;
}

int OptionGroup::value(const char* option, int fallBack) const
{
    const std::string* text = m_data->find(option);
    int value = 0;
    return text && readNumber(*text, value) ? value : fallBack;
}

double OptionGroup::value(const char* option, double fallBack) const
{
    const std::string* text = m_data->find(option);
    double value = 0;
    return text && readNumber(*text, value) && std::isfinite(value) ? value : fallBack;
}

std::wstring OptionGroup::value(const char* option, const std::wstring& fallBack) const
{
    const std::string* text = m_data->find(option);
    std::vector<std::wstring> texts;
    return text && OptionFile::unquoted(*text, texts) && texts.size() == 1 ? texts.front() : fallBack;
}

std::vector<std::wstring> OptionGroup::value(const char* option,
                                             const std::vector<std::wstring>& fallBack) const
{
    const std::string* text = m_data->find(option);
    std::vector<std::wstring> texts;
    return text && OptionFile::unquoted(*text, texts) ? texts : fallBack;
}

void OptionGroup::setValue(const char* option, bool value)
{
    setText(option, value ? "true" : "false");
}

void OptionGroup::setValue(const char* option, int value)
{
    setText(option, numberText(value));
}

void OptionGroup::setValue(const char* option, double value)
{
    setText(option, numberText(value));
}

void OptionGroup::setValue(const char* option, const std::wstring& value)
{
    setText(option, OptionFile::quoted(value));
}

void OptionGroup::setValue(const char* option, const std::vector<std::wstring>& value)
{
    setText(option, listText(value));
}

void OptionGroup::setText(const char* option, std::string text)
{
    if (const std::string* before = m_data->find(option); before && *before == text)
        return;
    m_data->values.insert_or_assign(option, std::move(text));
    m_data->saveSoon(this);
    OptionEvent event(this, option);
    fire(&OptionEventSite::optionChanged, &event);
}

void OptionGroup::reset()
{
    m_data->load();
    const OptionFile::Values before = std::exchange(m_data->values, {});
    if (before.empty())
        return;
    m_data->saveSoon(this);
    for (const auto& [option, text] : before) {
        OptionEvent event(this, option.c_str());
        fire(&OptionEventSite::optionChanged, &event);
    }
}

void OptionGroup::save()
{
    m_data->save();
}

void OptionGroup::saveLater(Tasks* tasks)
{
    s_saveLater = tasks;
    if (!tasks)
        for (const OptionGroup* group : groups()) {
            group->m_data->queued = false;
            group->m_data->save();
        }
}

MultiThreadOptionGroup* MultiThreadOptionGroup::get()
{
    static MultiThreadOptionGroup group;
    return &group;
}

} // namespace Vs
