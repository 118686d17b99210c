#include "Services/Itemhub/Admin/Backup.h"

#include "Services/Itemhub/Store/Postgresql.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <filesystem>
#include <stdexcept>

namespace Itemhub::Admin {

namespace {

namespace fs = std::filesystem;

/// A value quoted for libpq.
QString quoted(QString text)
{
    return '\'' + text.replace('\\', "\\\\").replace('\'', "\\'") + '\'';
}

void dump(const Store::DatabaseOptions& options, const fs::path& file)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PGPASSWORD", options.password);
    program.setProcessEnvironment(environment);
    QStringList where{"dbname=" + quoted(options.name), "target_session_attrs=read-write"};
    if (!options.user.isEmpty())
        where << "user=" + quoted(options.user);
    if (!options.host.isEmpty())
        where << Store::postgresqlServers(options);
    program.start("pg_dump", {"--format=custom", "--no-owner", "--file=" + QString::fromStdString(file),
                              "--dbname=" + where.join(' ')});
    if (!program.waitForFinished(-1) || program.exitStatus() != QProcess::NormalExit ||
        program.exitCode() != 0)
        throw std::runtime_error("pg_dump failed: " + program.readAllStandardError().toStdString() +
                                 program.errorString().toStdString());
}

} // namespace

void backup(Routes::Service& service, const QStringList& words)
{
    const fs::path folder = words[0].toStdString();
    fs::create_directories(folder / "blobs");
    fs::permissions(folder, fs::perms::owner_all);
    // Under a temporary name until it is complete.
    const fs::path database = folder / "database", fresh = folder / "database.new";
    fs::remove(fresh);
    const QString statement = service.database.dialect().backup(QString::fromStdString(fresh));
    if (statement.isEmpty())
        dump(service.config.database, fresh);
    else
        service.database.connection().runPlain(statement);
    service.blobs.each([&](const std::string& sha256, int64_t) {
        const fs::path target = folder / "blobs" / sha256.substr(0, 2) / sha256,
                       part = target.string() + ".new";
        if (fs::exists(target))
            return;
        fs::create_directories(target.parent_path());
        const Blobs::Descriptor content = service.blobs.open(sha256);
        fs::copy_file("/proc/self/fd/" + std::to_string(content.get()), part,
                      fs::copy_options::overwrite_existing);
        fs::rename(part, target);
    });
    fs::copy_file(service.config.keyFile.toStdString(), folder / "service.key",
                  fs::copy_options::overwrite_existing);
    fs::rename(fresh, database);
}

} // namespace Itemhub::Admin
