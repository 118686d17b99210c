#include "Server/DataModel/Native/Manifest.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Types/Uuid.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <stdexcept>

namespace Vs::Native {

namespace {

using boost::uuids::uuid;

QString text(const std::wstring& wide)
{
    return QString::fromUtf8(Strings::narrow(wide).c_str());
}

QString text(const uuid& guid)
{
    return text(fromUuid(guid));
}

[[noreturn]] void fault(const std::string& cause)
{
    throw std::runtime_error("its table of contents is damaged: " + cause);
}

[[noreturn]] void faultOf(const std::string& member, const char* what)
{
    fault('"' + member + "\" " + what);
}

/// Reads an object's members and says which one is missing.
class Members
{
public:
    explicit Members(const QJsonObject& object) : m_object(object) {}

    QJsonValue value(const char* name) const
    {
        const auto found = m_object.constFind(QLatin1String(name));
        if (found == m_object.constEnd())
            fault(std::string("there is no \"") + name + "\"");
        return *found;
    }
    std::string string(const char* name) const
    {
        const QJsonValue found = value(name);
        if (!found.isString())
            faultOf(name, "is not a text");
        return found.toString().toStdString();
    }
    std::wstring wide(const char* name) const { return Strings::widen(string(name)); }
    uuid guid(const char* name) const { return guidOf(name, value(name)); }
    uint64_t count(const char* name) const
    {
        const qint64 found = value(name).toInteger(-1);
        if (found < 0)
            faultOf(name, "is not a count");
        return static_cast<uint64_t>(found);
    }
    QJsonArray array(const char* name) const
    {
        const QJsonValue found = value(name);
        if (!found.isArray())
            faultOf(name, "is not a list");
        return found.toArray();
    }
    Members object(const char* name) const { return Members(objectOf(name, value(name))); }
    bool has(const char* name) const { return m_object.contains(QLatin1String(name)); }
    const QJsonObject& all() const { return m_object; }

    static uuid guidOf(const char* name, const QJsonValue& value)
    {
        const uuid guid = fromString(Strings::widen(value.toString().toStdString()));
        if (guid.is_nil())
            faultOf(name, "is not an identifier");
        return guid;
    }
    static QJsonObject objectOf(const char* name, const QJsonValue& value)
    {
        if (!value.isObject())
            faultOf(name, "is not an object");
        return value.toObject();
    }

private:
    QJsonObject m_object;
};

// Version 1 knew one kind of asset and no settings; its parts were packed, so nothing lay at a known place.
void readVersion1(const Members& top, Manifest& manifest)
{
    manifest.documentType = top.string("documentType");
    manifest.document = top.guid("document");
    for (const QJsonValue value : top.array("models")) {
        const Members model(Members::objectOf("models", value));
        Manifest::Asset asset;
        asset.guid = model.guid("guid");
        asset.name = model.wide("name");
        asset.type = model.string("type");
        asset.part = model.string("file");
        manifest.assets.push_back(std::move(asset));
    }
    if (!manifest.assets.empty())
        manifest.activeAsset = manifest.assets.front().guid;
}

Manifest::Asset readAsset(const Members& members)
{
    Manifest::Asset asset;
    asset.guid = members.guid("guid");
    asset.name = members.wide("name");
    asset.type = members.string("type");
    asset.visible = members.value("visible").toBool();
    if (members.has("parent"))
        asset.parent = members.guid("parent");
    for (const QJsonValue reference : members.array("references"))
        asset.references.push_back(Members::guidOf("references", reference));
    const QJsonObject settings = members.object("settings").all();
    for (auto each = settings.begin(); each != settings.end(); ++each)
        asset.settings[each.key().toStdString()] = Strings::widen(each.value().toString().toStdString());
    if (members.has("model")) {
        const Members model = members.object("model");
        asset.part = model.string("entry");
        asset.place = model.count("place");
        asset.size = model.count("size");
        asset.hash = std::strtoull(model.string("hash").c_str(), nullptr, 16);
    }
    return asset;
}

void readVersion2(const Members& top, Manifest& manifest)
{
    const Members document = top.object("document");
    manifest.document = document.guid("guid");
    manifest.documentType = document.string("type");
    if (document.has("activeAsset"))
        manifest.activeAsset = document.guid("activeAsset");
    for (const QJsonValue value : top.array("assets"))
        manifest.assets.push_back(readAsset(Members(Members::objectOf("assets", value))));
}

constexpr const char* kUntilChanged = "changed";
constexpr const char* kUntilMoved = "moved";

// Nothing in an extra is a reason to refuse the file.
void readExtra(const QJsonObject& object, Manifest& manifest)
{
    Manifest::Extra extra;
    extra.entry = object["entry"].toString().toStdString();
    extra.asset = fromString(Strings::widen(object["asset"].toString().toStdString()));
    for (const QJsonValue until : object["until"].toArray()) {
        if (until.toString() == QLatin1String(kUntilChanged))
            extra.untilChanged = true;
        else if (until.toString() == QLatin1String(kUntilMoved))
            extra.untilMoved = true;
        else
            return;
    }
    if (!extra.entry.empty() && (object["asset"].isUndefined() || !extra.asset.is_nil()))
        manifest.extras.push_back(std::move(extra));
}

// Version 3 begins with its type and has extras.
void readVersion3(const Members& top, Manifest& manifest)
{
    readVersion2(top, manifest);
    for (const QJsonValue value : top.all()["extras"].toArray())
        readExtra(value.toObject(), manifest);
}

struct Reader
{
    int version;
    void (*read)(const Members& top, Manifest& manifest);
};

// One row for each layout that was ever written.
constexpr Reader kReaders[] = {
    {1, readVersion1}, {2, readVersion2},
    {3, readVersion3}, {4, readVersion3}, // with models of the third layout, which older programs can't read
    {5, readVersion3},                    // with models of the fourth layout, likewise
};

// Takes away the assets that nothing refers to any more, until none is left but those of a circle. Without
// recursion, as a chain may be as long as the list.
void refuseCircles(const Manifest& manifest)
{
    std::map<uuid, size_t> referrers;
    std::map<uuid, const Manifest::Asset*> assets;
    for (const Manifest::Asset& asset : manifest.assets) {
        assets[asset.guid] = &asset;
        for (const uuid& reference : asset.references)
            ++referrers[reference];
    }
    std::vector<const Manifest::Asset*> free;
    for (const Manifest::Asset& asset : manifest.assets)
        if (!referrers.contains(asset.guid))
            free.push_back(&asset);
    size_t taken = 0;
    for (; !free.empty(); ++taken) {
        const Manifest::Asset* asset = free.back();
        free.pop_back();
        for (const uuid& reference : asset->references)
            if (--referrers[reference] == 0)
                free.push_back(assets[reference]);
    }
    if (taken != manifest.assets.size())
        fault("assets refer to one another in a circle");
}

void check(const Manifest& manifest)
{
    std::set<uuid> guids, visible;
    std::set<std::string> parts;
    for (const Manifest::Asset& asset : manifest.assets) {
        const std::string name = "\"" + Strings::narrow(asset.name) + "\"";
        if (!guids.insert(asset.guid).second)
            fault("two assets are " + Strings::narrow(fromUuid(asset.guid)));
        if (asset.visible)
            visible.insert(asset.guid);
        else if (asset.parent.is_nil() || asset.parent == asset.guid || !guids.contains(asset.parent))
            fault("the hidden asset " + name + " belongs to none");
        if (!asset.part.empty() && !parts.insert(asset.part).second)
            fault("the model of " + name + " is another asset's as well");
    }
    for (const Manifest::Asset& asset : manifest.assets)
        for (const uuid& reference : asset.references)
            if (!guids.contains(reference))
                fault("\"" + Strings::narrow(asset.name) + "\" refers to an asset that isn't there");
    refuseCircles(manifest);
    if (visible.empty())
        fault("there is no asset to show");
    if (!visible.contains(manifest.activeAsset))
        fault("its active asset isn't there");
}

QJsonObject written(const Manifest::Asset& asset)
{
    QJsonObject object{{"guid", text(asset.guid)},
                       {"name", text(asset.name)},
                       {"type", QString::fromStdString(asset.type)},
                       {"visible", asset.visible}};
    if (!asset.parent.is_nil())
        object["parent"] = text(asset.parent);
    QJsonArray references;
    for (const uuid& reference : asset.references)
        references.append(text(reference));
    object["references"] = references;
    QJsonObject settings;
    for (const auto& [key, value] : asset.settings)
        settings[QString::fromStdString(key)] = text(value);
    object["settings"] = settings;
    if (!asset.part.empty()) {
        char hash[17];
        std::snprintf(hash, sizeof hash, "%016llx", static_cast<unsigned long long>(asset.hash));
        object["model"] = QJsonObject{{"entry", QString::fromStdString(asset.part)},
                                      {"place", static_cast<qint64>(asset.place)},
                                      {"size", static_cast<qint64>(asset.size)},
                                      {"hash", hash}};
    }
    return object;
}

QJsonObject written(const Manifest::Extra& extra)
{
    QJsonObject object{{"entry", QString::fromStdString(extra.entry)}};
    if (!extra.asset.is_nil())
        object["asset"] = text(extra.asset);
    QJsonArray until;
    if (extra.untilChanged)
        until.append(kUntilChanged);
    if (extra.untilMoved)
        until.append(kUntilMoved);
    object["until"] = until;
    return object;
}

} // namespace

Manifest Manifest::read(std::string_view json)
{
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(
        QByteArray::fromRawData(json.data(), static_cast<qsizetype>(json.size())), &error);
    if (error.error != QJsonParseError::NoError)
        fault(error.errorString().toStdString());
    if (!parsed.isObject())
        fault("it is not an object");
    const Members top(parsed.object());
    Manifest manifest;
    manifest.version = top.value("format").toInt(0);
    const std::string software = top.string("software");
    if (manifest.version > kVersion)
        throw std::runtime_error("it is of format " + std::to_string(manifest.version) +
                                 ", written by version " + software + "; this program reads formats up to " +
                                 std::to_string(kVersion));
    const auto reader = std::find_if(std::begin(kReaders), std::end(kReaders),
                                     [&](const Reader& row) { return row.version == manifest.version; });
    if (reader == std::end(kReaders))
        fault("its format has no valid number");
    manifest.software = SoftwareVersion::versionInfo(software);
    reader->read(top, manifest);
    check(manifest);
    return manifest;
}

std::string Manifest::write() const
{
    QJsonObject document{{"guid", text(this->document)}, {"type", QString::fromStdString(documentType)}};
    if (!activeAsset.is_nil())
        document["activeAsset"] = text(activeAsset);
    QJsonArray list;
    for (const Asset& asset : assets)
        list.append(written(asset));
    QJsonArray extraList;
    for (const Extra& extra : extras)
        extraList.append(written(extra));
    const QJsonObject top{{"format", kVersion},
                          {"software", QString::fromStdString(SoftwareVersion::versionString(software))},
                          {"document", document},
                          {"assets", list},
                          {"extras", extraList}};
    return QJsonDocument(top).toJson().toStdString();
}

} // namespace Vs::Native
