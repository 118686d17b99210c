#include "UI/Base/Program/Private/FileEdition.h"

#include "Server/Base/Exception.h"
#include "Server/Base/JsonFile.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/QtText.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>

namespace Vu {

using Vs::Services::EditionLink;

struct FileEdition::Content
{
    std::wstring help, feedback, discussion, videos, tour, newestVersion;
    std::vector<EditionLink> suggestbox;
    bool cloudDisabled = false;
    bool itemhubDisabled = false;
};

namespace {

class Reader
{
public:
    Reader(const boost::filesystem::path& file, const QJsonObject& object) : m_file(file), m_object(object) {}

    std::wstring text(const char* member) const { return textOf(m_object, member, member); }

    std::wstring address(const char* member) const { return resolved(text(member)); }

    std::vector<EditionLink> links(const char* member) const
    {
        const QJsonValue value = m_object.value(QLatin1String(member));
        if (!value.isArray() && !value.isUndefined())
            complain(member, "is not a list");
        std::vector<EditionLink> links;
        for (const QJsonValue each : value.toArray()) {
            const QJsonObject link = each.toObject();
            links.push_back({textOf(link, "title", member), resolved(textOf(link, "address", member))});
            if (links.back().address.empty()) {
                complain(member, "has an entry without an address");
                links.pop_back();
            }
        }
        return links;
    }

    bool flag(const char* member) const
    {
        const QJsonValue value = m_object.value(QLatin1String(member));
        if (!value.isBool() && !value.isUndefined())
            complain(member, "is neither true nor false");
        return value.toBool();
    }

private:
    std::wstring textOf(const QJsonObject& object, const char* member, const char* where) const
    {
        const QJsonValue value = object.value(QLatin1String(member));
        if (!value.isString() && !value.isUndefined())
            complain(where, "is not a text");
        return Vs::wideText(value.toString());
    }

    static std::wstring resolved(const std::wstring& address)
    {
        if (address.empty() || !QUrl(QString::fromStdWString(address)).isRelative())
            return address;
        return (Vs::PathInfo::rootDirectory() / address).wstring();
    }

    void complain(const char* member, const char* what) const
    {
        Vs::warn(m_file.wstring() + L": \"" + Vs::Strings::widen(member) + L"\" " + Vs::Strings::widen(what) +
                 L"; it is passed over.");
    }

    const boost::filesystem::path& m_file;
    const QJsonObject& m_object;
};

QJsonObject readObject(const boost::filesystem::path& file)
{
    try {
        return Vs::JsonFile::read(file).value_or(QJsonObject());
    } catch (const Vs::Exception& error) {
        Vs::warn(error.message() + L"; the program has no links.");
        return {};
    }
}

} // namespace

FileEdition::FileEdition(boost::filesystem::path file) : m_file(std::move(file)) {}

FileEdition::~FileEdition() = default;

const FileEdition::Content& FileEdition::content() const
{
    if (!m_content) {
        const QJsonObject object = readObject(m_file);
        const Reader reader(m_file, object);
        m_content = std::make_unique<Content>(Content{
            .help = reader.address("help"),
            .feedback = reader.text("feedback"),
            .discussion = reader.address("discussion"),
            .videos = reader.address("videos"),
            .tour = reader.address("tour"),
            .newestVersion = reader.address("newestVersion"),
            .suggestbox = reader.links("suggestbox"),
            .cloudDisabled = reader.flag("cloudDisabled"),
            .itemhubDisabled = reader.flag("itemhubDisabled"),
        });
    }
    return *m_content;
}

std::wstring FileEdition::productWikiHelpURL() const
{
    return content().help;
}

std::wstring FileEdition::productFeedbackAddress() const
{
    return content().feedback;
}

std::wstring FileEdition::productDiscussionAddress() const
{
    return content().discussion;
}

std::wstring FileEdition::productVideosURL() const
{
    return content().videos;
}

std::vector<EditionLink> FileEdition::suggestboxLinks() const
{
    return content().suggestbox;
}

std::wstring FileEdition::tourGuideXmlPath() const
{
    return content().tour;
}

std::wstring FileEdition::newestVersionPath() const
{
    return content().newestVersion;
}

bool FileEdition::cloudDisabled() const
{
    return content().cloudDisabled;
}

bool FileEdition::itemhubDisabled() const
{
    return content().itemhubDisabled;
}

} // namespace Vu
