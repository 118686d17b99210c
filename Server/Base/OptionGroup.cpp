#include "Server/Base/OptionGroup.h"

#include "Server/Base/Exception.h"
#include "Server/Base/JsonFile.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/OptionGroups.h"
#include "Server/Base/QtText.h"
#include "Server/Base/Require.h"
#include "Server/Base/RunOptions.h"
#include "Server/Base/Task.h"
#include "Server/Base/Warning.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <boost/filesystem/operations.hpp>

namespace Vs {

namespace fs = boost::filesystem;

namespace {

Tasks* s_saveLater = nullptr;
} // namespace

// Never destroyed: groups are statics, which are destroyed in any order.
std::set<OptionGroup*>& optionGroups()
{
    static auto& all = *new std::set<OptionGroup*>;
    return all;
}

struct OptionGroup::Data
{
    std::string name;
    QJsonObject values;
    QJsonObject onDisk; ///< As it was read, for what the run doesn't keep.
    bool read = false;
    bool broken = false; ///< The file cannot be read; it is kept aside before it is overwritten.
    bool changed = false;
    bool queued = false;
    int interludes = 0;

    fs::path file() const { return PathInfo::optionsDirectory() / (name + ".json"); }

    /// Undefined for an option that was never set.
    QJsonValue find(const char* option)
    {
        assertMainThread();
        load();
        return values.value(QLatin1String(option));
    }

    void set(OptionGroup* group, const char* option, const QJsonValue& value)
    {
        if (find(option) == value)
            return;
        values.insert(QLatin1String(option), value);
        if (interludes == 0 && !RunOptions::contains(name, option))
            saveSoon(group);
        OptionEvent event(group, option);
        group->fire(&OptionEventSite::optionChanged, &event);
    }

    void load()
    {
        if (read)
            return;
        read = true;
        fs::path path;
        try {
            path = file();
        } catch (const Exception&) {
            return; // Reported once there is something to keep.
        }
        try {
            onDisk = values = JsonFile::read(path).value_or(QJsonObject());
        } catch (const Exception& error) {
            broken = true;
            warn(error.message() + L"; the defaults are used.");
        }
    }

    void save()
    {
        if (!changed || interludes > 0)
            return;
        changed = false;
        try {
            boost::system::error_code ignored;
            if (std::exchange(broken, false))
                fs::rename(file(), file().string() + ".broken", ignored);
            // What a person typed and where they work is nobody else's business.
            JsonFile::write(file(), kept(), JsonFile::Readers::OwnerOnly);
        } catch (const Exception& error) {
            warn(L"The settings are not kept: " + error.message() +
                 (error.message().ends_with(L'.') ? L"" : L"."));
        }
    }

    QJsonObject kept() const
    {
        QJsonObject result = values;
        for (const QString& option : values.keys() + onDisk.keys()) {
            if (!RunOptions::contains(name, option.toStdString()))
                continue;
            if (onDisk.contains(option))
                result[option] = onDisk[option];
            else
                result.remove(option);
        }
        return result;
    }

    static void tell(OptionGroup* group, const QStringList& options)
    {
        for (const QString& option : options) {
            OptionEvent event(group, option.toStdString().c_str());
            group->fire(&OptionEventSite::optionChanged, &event);
        }
    }

    void saveSoon(OptionGroup* group)
    {
        changed = true;
        if (!s_saveLater) {
            save();
        } else if (!std::exchange(queued, true)) {
            s_saveLater->post([this, group] {
                if (!optionGroups().contains(group))
                    return;
                queued = false;
                save();
            });
        }
    }
};

OptionGroup::OptionGroup(std::string name) : m_data(std::make_unique<Data>())
{
    assertMainThread();
    require(!name.empty(), "a group of options has a name, which is that of its file");
    m_data->name = std::move(name);
    optionGroups().insert(this);
}

OptionGroup::~OptionGroup()
{
    optionGroups().erase(this);
    m_data->save();
}

const std::string& OptionGroup::name() const
{
    return m_data->name;
}

bool OptionGroup::value(const char* option, bool fallBack) const
{
    return m_data->find(option).toBool(fallBack);
}

int OptionGroup::value(const char* option, int fallBack) const
{
    return m_data->find(option).toInt(fallBack);
}

double OptionGroup::value(const char* option, double fallBack) const
{
    return m_data->find(option).toDouble(fallBack);
}

std::wstring OptionGroup::value(const char* option, const std::wstring& fallBack) const
{
    const QJsonValue value = m_data->find(option);
    return value.isString() ? wideText(value.toString()) : fallBack;
}

std::vector<std::wstring> OptionGroup::value(const char* option,
                                             const std::vector<std::wstring>& fallBack) const
{
    const QJsonValue value = m_data->find(option);
    const QJsonArray array = value.toArray();
    const auto isText = [](const QJsonValue& text) { return text.isString(); };
    if (!value.isArray() || !std::all_of(array.begin(), array.end(), isText))
        return fallBack;
    std::vector<std::wstring> texts;
    for (const auto& text : array)
        texts.push_back(wideText(text.toString()));
    return texts;
}

void OptionGroup::setValue(const char* option, bool value)
{
    m_data->set(this, option, value);
}

void OptionGroup::setValue(const char* option, int value)
{
    m_data->set(this, option, value);
}

void OptionGroup::setValue(const char* option, double value)
{
    m_data->set(this, option, value);
}

void OptionGroup::setValue(const char* option, const std::wstring& value)
{
    m_data->set(this, option, QString::fromStdWString(value));
}

void OptionGroup::setValue(const char* option, const std::vector<std::wstring>& value)
{
    QJsonArray texts;
    for (const std::wstring& text : value)
        texts.append(QString::fromStdWString(text));
    m_data->set(this, option, texts);
}

void OptionGroup::reset()
{
    assertMainThread();
    m_data->load();
    const QJsonObject before = std::exchange(m_data->values, {});
    if (before.isEmpty())
        return;
    m_data->saveSoon(this);
    m_data->tell(this, before.keys());
}

void OptionGroup::save()
{
    m_data->save();
}

void OptionGroup::saveLater(Tasks* tasks)
{
    assertMainThread();
    s_saveLater = tasks;
    if (!tasks)
        for (const OptionGroup* group : optionGroups()) {
            group->m_data->queued = false;
            group->m_data->save();
        }
}

struct OptionGroup::Interlude::Before
{
    QJsonObject values;
};

OptionGroup::Interlude::Interlude(OptionGroup& group) : m_group(group), m_before(std::make_unique<Before>())
{
    assertMainThread();
    group.m_data->load();
    m_before->values = group.m_data->values;
    ++group.m_data->interludes;
}

OptionGroup::Interlude::~Interlude()
{
    Data& data = *m_group.m_data;
    const QJsonObject meanwhile = std::exchange(data.values, m_before->values);
    QStringList changed;
    for (const QString& option : meanwhile.keys())
        if (meanwhile[option] != data.values.value(option))
            changed << option;
    data.tell(&m_group, changed);
    if (--data.interludes == 0)
        data.save(); // what was waiting before
}

MultiThreadOptionGroup* MultiThreadOptionGroup::get()
{
    static MultiThreadOptionGroup group;
    return &group;
}

} // namespace Vs
