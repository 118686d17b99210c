#include "Server/Base/JsonFile.h"

#include "Server/Base/Exception.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vs::JsonFile {

namespace fs = boost::filesystem;

namespace {

[[noreturn]] void failed(const fs::path& file, const char* what, const QFileDevice& device)
{
    throw Exception(file.string() + " cannot be " + what + ": " + device.errorString().toStdString());
}

} // namespace

std::optional<QJsonObject> read(const fs::path& file)
{
    QFile device(QString::fromStdString(file.string()));
    if (!device.open(QIODevice::ReadOnly)) {
        boost::system::error_code error;
        if (fs::status(file, error).type() == fs::file_not_found)
            return std::nullopt;
        failed(file, "read", device);
    }
    const QByteArray content = device.readAll();
    if (device.error() != QFileDevice::NoError)
        failed(file, "read", device);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto end = content.begin() + std::min<qsizetype>(error.offset, content.size());
        throw Exception(file.string() + ':' + std::to_string(1 + std::count(content.begin(), end, '\n')) +
                        ": " + error.errorString().toStdString() + " (at byte " +
                        std::to_string(error.offset) + ')');
    }
    if (!document.isObject())
        throw Exception(file.string() + ": this is not a JSON object");
    return document.object();
}

void write(const fs::path& file, const QJsonObject& object, Readers readers)
{
    QSaveFile device(QString::fromStdString(file.string()));
    if (!device.open(QIODevice::WriteOnly) ||
        (readers == Readers::OwnerOnly &&
         !device.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)) ||
        device.write(QJsonDocument(object).toJson()) < 0 || !device.commit())
        failed(file, "written", device);
}

} // namespace Vs::JsonFile
