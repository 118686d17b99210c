#include "Server/DataModel/Recovery/Private/RecoveryRecord.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Native/Manifest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <ctime>
#include <stdexcept>

namespace Vs::Recovery {

namespace {

QString text(const std::wstring& wide)
{
    return QString::fromStdWString(wide);
}

// Names of files are bytes, which need not be text.
QString escaped(const std::wstring& path)
{
    return QByteArray::fromStdString(Strings::toBytes(path)).toPercentEncoding("/ ");
}

std::wstring unescaped(const QString& path)
{
    return Strings::fromBytes(QByteArray::fromPercentEncoding(path.toUtf8()).toStdString());
}

QJsonObject parsed(std::string_view json)
{
    return QJsonDocument::fromJson(QByteArray::fromRawData(json.data(), static_cast<qsizetype>(json.size())))
        .object();
}

// JSON's numbers hold no inode, nor a time in nanoseconds.
QString digits(uint64_t value)
{
    return QString::number(value);
}

bool isTime(const std::wstring& time)
{
    constexpr std::wstring_view kForm = L"00000000T000000";
    if (time.size() != kForm.size())
        return false;
    for (size_t i = 0; i < kForm.size(); ++i)
        if (kForm[i] == L'0' ? time[i] < L'0' || time[i] > L'9' : time[i] != kForm[i])
            return false;
    return true;
}

} // namespace

RecoveryRecord RecoveryRecord::read(std::string_view json)
{
    const QJsonObject object = parsed(json);
    RecoveryRecord record;
    record.fileName = object["fileName"].toString().toStdWString();
    record.savedTime = object["savedTime"].toString().toStdWString();
    record.documentType = object["documentType"].toString().toStdString();
    record.steps = static_cast<unsigned>(std::max(object["steps"].toInt(0), 0));
    record.attachmentUrl = object["attachmentUrl"].toString().toStdWString();
    const QJsonObject source = object["source"].toObject();
    record.source = unescaped(source["path"].toString());
    record.sourceState.identity = {
        source["device"].toString().toULongLong(), source["inode"].toString().toULongLong(),
        source["size"].toString().toULongLong(), source["modified"].toString().toLongLong()};
    record.sourceState.digest = source["digest"].toString().toStdString();
    for (const QJsonValue digest : object["digests"].toArray())
        record.digests.push_back(digest.toString().toStdString());
    if (record.fileName.empty() || record.documentType.empty() || !isTime(record.savedTime))
        throw std::runtime_error("its record is damaged");
    return record;
}

std::string RecoveryRecord::write() const
{
    QJsonObject object{{"fileName", text(fileName)},
                       {"savedTime", text(savedTime)},
                       {"documentType", QString::fromStdString(documentType)},
                       {"software", QString::fromStdString(SoftwareVersion::versionString(
                                        SoftwareVersion::currentVersionNumber()))}};
    if (!attachmentUrl.empty())
        object["attachmentUrl"] = text(attachmentUrl);
    if (!source.empty())
        object["source"] = QJsonObject{{"path", escaped(source)},
                                       {"device", digits(sourceState.identity.device)},
                                       {"inode", digits(sourceState.identity.inode)},
                                       {"size", digits(sourceState.identity.size)},
                                       {"modified", QString::number(sourceState.identity.modified)},
                                       {"digest", QString::fromStdString(sourceState.digest)}};
    QJsonArray all;
    for (const std::string& digest : digests)
        all.append(QString::fromStdString(digest));
    object["digests"] = all;
    if (steps != 0)
        object["steps"] = static_cast<int>(steps);
    return QJsonDocument(object).toJson().toStdString();
}

std::wstring RecoveryRecord::timeNow()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    const size_t length = std::strftime(text, sizeof text, "%Y%m%dT%H%M%S", &local);
    return std::wstring(text, text + length);
}

bool isNewer(std::string_view manifest)
{
    return parsed(manifest)["format"].toInt(0) > Native::Manifest::kVersion;
}

} // namespace Vs::Recovery
