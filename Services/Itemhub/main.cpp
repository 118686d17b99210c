// The lifecycle service: items with their versions, attachments and events, over HTTP.
//
//     quillet-itemhub --local FOLDER [--pipe DESCRIPTOR]
//         for one user on this machine, until the pipe is closed
//     quillet-itemhub --serve CONFIGURATION [--port PORT]
//         for a team; the port overrides the configuration's, so that several processes can share one
//     quillet-itemhub admin CONFIGURATION COMMAND...
//         accounts, tokens, backups; "help" lists the commands

#include "Services/Itemhub/Admin/Admin.h"
#include "Services/Itemhub/Routes/Route.h"
#include "Services/Itemhub/Run.h"
#include "Services/Itemhub/Store/StoreError.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <exception>
#include <stdexcept>

namespace {

constexpr int kUsage = 2, kFailed = 1;

int listRoutes()
{
    for (const Itemhub::Routes::Route& route : Itemhub::Routes::routes())
        std::printf("%s %s %s\n", route.method, route.pattern,
                    route.asks == Itemhub::Routes::Asks::Nothing
                        ? "anybody"
                        : Itemhub::Store::nameOf(route.role).toUtf8().constData());
    return 0;
}

Itemhub::Config configOf(const QCommandLineParser& parser)
{
    Itemhub::Config config = Itemhub::readConfig(parser.value("serve"));
    if (!parser.isSet("port"))
        return config;
    constexpr int kHighest = 65535;
    bool good = false;
    config.port = parser.value("port").toInt(&good);
    if (!good || config.port < 0 || config.port > kHighest)
        throw std::runtime_error("\"" + parser.value("port").toStdString() + "\" is not a port.");
    return config;
}

int run(QCommandLineParser& parser)
{
    if (parser.isSet("list-routes"))
        return listRoutes();
    if (parser.isSet("local"))
        return Itemhub::serveLocally(parser.value("local"), parser.value("pipe").toInt());
    if (parser.isSet("serve"))
        return Itemhub::serve(configOf(parser));
    const QStringList words = parser.positionalArguments();
    if (words.value(0) == "admin")
        return Itemhub::Admin::run(words.mid(1));
    std::fprintf(stderr, "quillet-itemhub: say --local, --serve or admin; --help tells more\n");
    return kUsage;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("quillet-itemhub");
    QCoreApplication::setApplicationVersion(ITEMHUB_VERSION);
    QCommandLineParser parser;
    parser.setApplicationDescription("The lifecycle service: items with their versions and attachments.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions(
        {{"local", "Serve one user of this machine out of a folder.", "folder"},
         {"pipe", "With --local, where address and token are written; the service ends with the pipe.",
          "descriptor", "1"},
         {"serve", "Serve a team, by a configuration file.", "configuration"},
         {"port", "With --serve, the port instead of the configuration's.", "port"},
         {"list-routes", "Print what the service answers to."}});
    parser.addPositionalArgument("admin", "Accounts, tokens, backups: admin CONFIGURATION help", "[admin]");
    // Administrators' passwords and names may begin with a hyphen.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.process(application);
    try {
        return run(parser);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillet-itemhub: %s\n", error.what());
        return kFailed;
    }
}
