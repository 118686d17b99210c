#include "Tests/Server/Itemhub/Fixture.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Task.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <QCoreApplication>
#include <QCryptographicHash>

#include <boost/filesystem/operations.hpp>

#include <thread>

namespace Web = Corvane::Itemstore::WebServices;

namespace {

Vs::AssetType& assetType()
{
    static Vs::AssetType type("ItemhubAssetType", L"Design", "VeloraDocType");
    return type;
}

/// Qt's own, and the folders of the profile, belong to the process.
void beginProcess()
{
    static int count = 1;
    static char name[] = "test";
    static char* words[] = {name, nullptr};
    static QCoreApplication application(count, words);
    static const TestSupport::ScratchFolder profile;
    Vs::PathInfo::profileDirectory(profile.path());
}

/// Creates a version by curl, like another program.
constexpr const char* kOther = R"sh(
set -e
customer="customer=acme"; bearer="Authorization: Bearer $TOKEN"; tus="Tus-Resumable: 1.0.0"
place=$(curl -sf -D - -o /dev/null -X POST -H "$bearer" -H "$tus" -H "Upload-Length: $(stat -c %s "$FILE")" \
    "${ADDRESS}uploads?$customer" | tr -d '\r' | sed -n 's/^[Ll]ocation: //p')
curl -sf -X PATCH -H "$bearer" -H "$tus" -H "Upload-Offset: 0" -H "Content-Type: application/offset+octet-stream" \
    --data-binary "@$FILE" "$place?$customer"
curl -sf -X POST -H "$bearer" -H "Content-Type: application/json" \
    -d "{\"upload\": \"${place##*/}\", \"madeFrom\": $FROM}" "${ADDRESS}attachments/$ATTACHMENT/versions?$customer"
)sh";

} // namespace

ItemhubTest::ItemhubTest()
{
    static const bool begun = (beginProcess(), true);
    static_cast<void>(begun);
    static int accounts = 0;
    m_account = "ada" + std::to_string(++accounts);
    EXPECT_TRUE(Vs::DocumentMgr::get()->registerDocumentType(&type()));
    EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(&assetType()));
    Vs::ItemhubEventSource::get()->subscribe(this);
}

ItemhubTest::~ItemhubTest()
{
    service().proxy().onRequest({});
    hub().signOut();
    Vs::ItemhubUtilities::results().flush();
    Vs::ItemhubEventSource::get()->unsubscribe(this);
    while (Vs::DocumentMgr::get()->documents() > 0)
        Vs::DocumentMgr::get()->close(Vs::DocumentMgr::get()->document(0u));
    Vs::AssetTypeMgr::get()->unregisterType(&assetType());
    Vs::DocumentMgr::get()->unregisterDocumentType(&type());
}

TestSupport::ItemService& ItemhubTest::service()
{
    static TestSupport::ItemService service;
    return service;
}

Vs::DocumentType& ItemhubTest::type()
{
    static Vs::DocumentType type("VeloraDocType", L"Design", L".vlra");
    return type;
}

Vs::Itemhub::Access ItemhubTest::access(const std::string& token) const
{
    Vs::Itemhub::Access access;
    access.address = service().address();
    access.customer = "acme";
    access.token = token;
    return access;
}

void ItemhubTest::signIn(const std::string& role)
{
    ASSERT_TRUE(hub().signIn(access(service().token(m_account, role)), false));
}

bool ItemhubTest::until(const std::function<bool()>& holds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        QCoreApplication::processEvents();
        Vs::ItemhubUtilities::results().flush();
    }
    return true;
}

ItemhubTest::Path ItemhubTest::newItem(const std::wstring& name)
{
    return hub().addNewItem(&type(), 1, 0, 0, name, L"Notes");
}

void ItemhubTest::save(const Path& file, const std::string& content, const std::wstring& label)
{
    if (!label.empty())
        hub().setCheckinDescription(file, label);
    Vs::Status status;
    Vs::Document* document = Vs::DocumentMgr::get()->document(file.wstring());
    if (!document) {
        document = Vs::DocumentMgr::get()->create(&assetType(), status);
        ASSERT_NE(document, nullptr) << Vs::Strings::narrow(status.toString());
        document->path(file.wstring());
    }
    const Path beside = file.parent_path() / "beside";
    TestSupport::overwrite(beside, content);
    boost::filesystem::rename(beside, file);
    Vs::DocumentEvent event(document);
    Vs::DocumentEventSource::get()->fireDocumentSaved(&event);
}

Web::Attachment ItemhubTest::attachmentOf(const Path& file)
{
    const auto item = hub().itemOf(file);
    if (!item)
        return {};
    for (const Web::Attachment& each : hub().getItemAttachments({}, hub().getItemById(int(item->itemId))))
        if (item->attachmentId == 0 || each.id() == item->attachmentId)
            return each;
    return {};
}

std::vector<Web::Version> ItemhubTest::versionsOf(const Path& file)
{
    return hub().getVersions(attachmentOf(file));
}

bool ItemhubTest::makeVersionElsewhere(const Path& file, const std::string& content) const
{
    const TestSupport::ScratchFolder folder;
    const Web::Attachment attachment = attachmentOf(file);
    TestSupport::ProcessOptions options;
    options.environment = {"TOKEN=" + service().token("bob", "writer"),
                           "FILE=" + folder.write("content", content).string(),
                           "ADDRESS=" + service().address(), "ATTACHMENT=" + std::to_string(attachment.id()),
                           "FROM=" + std::to_string(attachment.latestVersion())};
    const auto result = TestSupport::runProcess("/bin/sh", {"-c", kOther}, options);
    constexpr int kRefused = 22; // Curl's own.
    EXPECT_TRUE(result.exitCode == 0 || result.exitCode == kRefused) << result.errors << result.output;
    return result.exitCode == 0;
}

std::string ItemhubTest::sha256(const std::string& content)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(content), QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

std::optional<Web::ItemhubException::Kind> kindOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Web::ItemhubException& error) {
        return error.kind();
    }
    return std::nullopt;
}
