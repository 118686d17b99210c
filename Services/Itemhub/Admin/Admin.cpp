#include "Services/Itemhub/Admin/Admin.h"

#include "Services/Itemhub/Access/Grants.h"
#include "Services/Itemhub/Admin/Backup.h"
#include "Services/Itemhub/Admin/BlobCheck.h"
#include "Services/Itemhub/Routes/Clean.h"
#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Routes/Service.h"
#include "Services/Itemhub/Store/Copy.h"
#include "Services/Itemhub/Store/Events.h"
#include "Services/Itemhub/Store/Teams.h"

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Itemhub::Admin {

namespace {

using Routes::Service;
using Store::Account;
using Store::Role;

constexpr qint64 kDay = 24LL * 3600 * 1000;

void print(const QString& line)
{
    std::printf("%s\n", line.toUtf8().constData());
}

[[noreturn]] void refuse(const QString& why)
{
    throw std::runtime_error(why.toStdString());
}

qint64 customerOf(Service& service, const QString& name)
{
    const auto tenant = Store::findTenant(service.database.connection(), name);
    if (!tenant)
        refuse("There is no customer \"" + name + "\".");
    return *tenant;
}

Account accountOf(Service& service, const QString& customer, const QString& name)
{
    const auto account =
        Store::findAccount(service.database.connection(), customerOf(service, customer), name);
    if (!account)
        refuse("The customer \"" + customer + "\" has no account \"" + name + "\".");
    return *account;
}

Role roleOf(const QString& name)
{
    const auto role = Store::roleOf(name);
    if (!role)
        refuse("\"" + name + "\" must be reader, writer or admin.");
    return *role;
}

qint64 numberOf(const QString& text)
{
    bool good = false;
    const qint64 number = text.toLongLong(&good);
    if (!good || number < 1)
        refuse("\"" + text + "\" must be a number from 1.");
    return number;
}

QString nameOf(const QString& text)
{
    QString clean = Routes::cleanedName(text);
    if (clean.isEmpty() || clean != text)
        refuse("\"" + clean + "\" cannot be a name.");
    return clean;
}

/// From standard input, so that it doesn't show in the list of processes.
QString passwordFromInput()
{
    constexpr qsizetype kShortest = 10;
    std::string line;
    std::getline(std::cin, line);
    const QString password = QString::fromStdString(line);
    if (password.size() < kShortest)
        refuse("The password, the first line of the input, must have at least 10 characters.");
    return Access::passwordHash(password);
}

void addCustomer(Service& service, const QStringList& words)
{
    Store::addTenant(service.database.connection(), nameOf(words[0]));
}

void addWorkspace(Service& service, const QStringList& words)
{
    print(QString::number(
        Store::addWorkspace(service.database.connection(), customerOf(service, words[0]), nameOf(words[1]))));
}

void addAccount(Service& service, const QStringList& words)
{
    const qint64 customer = customerOf(service, words[0]);
    Store::addAccount(service.database.connection(), customer, nameOf(words[1]), passwordFromInput());
}

void setPassword(Service& service, const QStringList& words)
{
    const Account account = accountOf(service, words[0], words[1]);
    Store::setPassword(service.database.connection(), account.id, passwordFromInput());
}

void disableAccount(Service& service, const QStringList& words)
{
    Store::setDisabled(service.database.connection(), accountOf(service, words[0], words[1]).id, true);
}

void enableAccount(Service& service, const QStringList& words)
{
    Store::setDisabled(service.database.connection(), accountOf(service, words[0], words[1]).id, false);
}

qint64 workspaceOf(Service& service, qint64 customer, const QString& word)
{
    if (word == "all")
        return Store::kAllWorkspaces;
    const qint64 workspace = numberOf(word);
    if (!Store::aboutWorkspace(service.database.connection(), customer, 0, workspace))
        refuse("The customer has no workspace " + word + '.');
    return workspace;
}

Role roleOrNone(const QString& name)
{
    return name == "none" ? Role::None : roleOf(name);
}

void setMember(Service& service, const QStringList& words)
{
    const Account account = accountOf(service, words[0], words[1]);
    Store::setMembership(service.database.connection(), account.id,
                         workspaceOf(service, account.tenant, words[2]), roleOrNone(words[3]));
}

Store::Team teamOf(Service& service, const QString& customer, const QString& name)
{
    const auto team = Store::findTeam(service.database.connection(), customerOf(service, customer), name);
    if (!team)
        refuse("The customer \"" + customer + "\" has no team \"" + name + "\".");
    return *team;
}

void addTeam(Service& service, const QStringList& words)
{
    Store::addTeam(service.database.connection(), customerOf(service, words[0]), nameOf(words[1]));
}

void removeTeam(Service& service, const QStringList& words)
{
    Store::removeTeam(service.database.connection(), teamOf(service, words[0], words[1]).id);
}

void joinTeam(Service& service, const QStringList& words)
{
    Store::setInTeam(service.database.connection(), teamOf(service, words[0], words[1]).id,
                     accountOf(service, words[0], words[2]).id, true);
}

void leaveTeam(Service& service, const QStringList& words)
{
    Store::setInTeam(service.database.connection(), teamOf(service, words[0], words[1]).id,
                     accountOf(service, words[0], words[2]).id, false);
}

void setTeam(Service& service, const QStringList& words)
{
    const qint64 team = teamOf(service, words[0], words[1]).id;
    Store::setTeamRole(service.database.connection(), team,
                       workspaceOf(service, customerOf(service, words[0]), words[2]), roleOrNone(words[3]));
}

Access::GrantWishes wishesOf(Service& service, const QStringList& words, const QString& scope,
                             const QString& days)
{
    return {.account = accountOf(service, words[0], words[1]).id,
            .scope = roleOf(scope),
            .label = "made by the administrator",
            .lifetimeMs = numberOf(days) * kDay};
}

void addToken(Service& service, const QStringList& words)
{
    print(Access::grantBearer(service.database.connection(), wishesOf(service, words, words[2], words[3]))
              .token);
}

void addConsumer(Service& service, const QStringList& words)
{
    constexpr size_t kKeyBytes = 12;
    const QString key = Access::randomText(kKeyBytes);
    Store::addConsumer(service.database.connection(), customerOf(service, words[0]), key, nameOf(words[1]));
    print("consumerKey " + key);
    print("consumerSecret " + Access::consumerSecretOf(service.key, key));
}

void addSignedToken(Service& service, const QStringList& words)
{
    const auto consumer = Store::findConsumer(service.database.connection(), words[2]);
    if (!consumer || consumer->tenant != customerOf(service, words[0]))
        refuse("The customer has no consumer \"" + words[2] + "\".");
    const auto granted = Access::grantSigned(service.database.connection(), service.key,
                                             wishesOf(service, words, words[3], words[4]), consumer->id);
    print("token " + granted.token);
    print("tokenSecret " + granted.tokenSecret);
    print("sessionHandle " + granted.sessionHandle);
}

void listTokens(Service& service, const QStringList& words)
{
    for (const Store::TokenRecord& token :
         Store::tokensOf(service.database.connection(), accountOf(service, words[0], words[1]).id))
        print(QString("%1 %2 until %3: %4")
                  .arg(QString::number(token.id), Store::nameOf(token.scope),
                       Routes::timeText(token.expiresAt), token.label));
}

void removeToken(Service& service, const QStringList& words)
{
    const Account account = accountOf(service, words[0], words[1]);
    if (!Store::removeToken(service.database.connection(), account.id, numberOf(words[2])))
        refuse("The account has no token " + words[2] + '.');
}

void showAudit(Service& service, const QStringList& words)
{
    for (const Store::AuditRecord& record :
         Store::auditTrail(service.database.connection(), numberOf(words[0])))
        print(QStringList{Routes::timeText(record.at), record.tenant, record.account, record.address,
                          record.action, record.subject}
                  .join('\t'));
}

void copyDatabase(Service& service, const QStringList& words)
{
    Store::Database other(readConfig(words[0]).database);
    Store::copyAll(service.database.connection(), other.connection());
}

struct Command
{
    const char* words;
    const char* arguments;
    const char* help;
    void (*run)(Service&, const QStringList&);
};

const std::vector<Command> kCommands{
    {"customer add", "CUSTOMER", "makes a customer", addCustomer},
    {"workspace add", "CUSTOMER NAME", "makes a workspace and prints its number", addWorkspace},
    {"account add", "CUSTOMER ACCOUNT", "makes an account; the password is the first line of the input",
     addAccount},
    {"account password", "CUSTOMER ACCOUNT", "sets its password, in the same way", setPassword},
    {"account disable", "CUSTOMER ACCOUNT", "from now on none of its tokens holds", disableAccount},
    {"account enable", "CUSTOMER ACCOUNT", "they hold again", enableAccount},
    {"member set", "CUSTOMER ACCOUNT WORKSPACE|all reader|writer|admin|none", "gives or takes a role",
     setMember},
    {"team add", "CUSTOMER TEAM", "makes a team, whose roles all have that are in it", addTeam},
    {"team remove", "CUSTOMER TEAM", "dissolves it; its accounts stay", removeTeam},
    {"team join", "CUSTOMER TEAM ACCOUNT", "takes an account into it", joinTeam},
    {"team leave", "CUSTOMER TEAM ACCOUNT", "takes an account out of it", leaveTeam},
    {"team set", "CUSTOMER TEAM WORKSPACE|all reader|writer|admin|none", "gives it a role or takes it",
     setTeam},
    {"token add", "CUSTOMER ACCOUNT reader|writer|admin DAYS", "prints a bearer token", addToken},
    {"token add-signed", "CUSTOMER ACCOUNT CONSUMERKEY reader|writer|admin DAYS",
     "prints a token for signed requests, its secret and its session handle", addSignedToken},
    {"token list", "CUSTOMER ACCOUNT", "prints its tokens' numbers, scopes and ends", listTokens},
    {"token remove", "CUSTOMER ACCOUNT TOKEN", "from now on it doesn't hold", removeToken},
    {"consumer add", "CUSTOMER NAME", "prints the key and the secret of a program that signs requests",
     addConsumer},
    {"audit", "COUNT", "prints what administrators want to know, the newest last", showAudit},
    {"database copy", "CONFIGURATION",
     "copies the database into the empty one of another configuration, of either kind; contents and key stay",
     copyDatabase},
    {"backup", "FOLDER", "copies database, contents and key; the service may run meanwhile", backup},
    {"blobs check", "", "compares all contents with their hashes", checkBlobs},
    {"blobs clean", "", "removes contents that nothing refers to and that are older than a day", cleanBlobs},
};

int usage()
{
    std::fprintf(stderr, "quillet-itemhub admin CONFIGURATION COMMAND, where the commands are\n");
    for (const Command& command : kCommands)
        std::fprintf(stderr, "  %s %s\n      %s\n", command.words, command.arguments, command.help);
    constexpr int kUsage = 2;
    return kUsage;
}

} // namespace

int run(const QStringList& words)
{
    const QString line = words.mid(1).join(' ') + ' ';
    for (const Command& command : kCommands) {
        const QString name = command.words;
        const auto wanted = QString(command.arguments).split(' ', Qt::SkipEmptyParts).size();
        const QStringList arguments = words.mid(1 + name.split(' ').size());
        if (!line.startsWith(name + ' ') || arguments.size() != wanted)
            continue;
        Service service(readConfig(words[0]));
        command.run(service, arguments);
        Store::addAudit(service.database.connection(), 0, 0, name, arguments.join(' '), "admin");
        return 0;
    }
    return usage();
}

} // namespace Itemhub::Admin
