#pragma once

#include "Server/DataModel/DocumentType.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Tests/Support/Servers/ItemService.h"

#include <functional>
#include <gtest/gtest.h>

/// A user of the client, with the real service behind the proxy. All tests of the process share the service;
/// each has a separate account.
class ItemhubTest : public ::testing::Test, public Vs::ItemhubEventSite
{
protected:
    using Path = boost::filesystem::path;

    ItemhubTest();
    ~ItemhubTest() override;

    static TestSupport::ItemService& service();
    static Vs::ItemhubUtilities& hub() { return *Vs::ItemhubUtilities::get(); }
    static Vs::DocumentType& type();

    /// Signs in by a token, with the account "ada" and a number.
    void signIn(const std::string& role = "writer");
    [[nodiscard]] Vs::Itemhub::Access access(const std::string& token) const;
    [[nodiscard]] const std::string& account() const { return m_account; }

    /// Runs main thread tasks until something holds, for at most 20 seconds.
    [[nodiscard]] static bool until(const std::function<bool()>& holds);
    static bool arrive() { return hub().waitForUploads(std::chrono::seconds(20)); }

    /// A new item of the workspace 1; its local file doesn't exist yet.
    [[nodiscard]] static Path newItem(const std::wstring& name);
    /// Writes a content to the file, like a save, and reports it.
    static void save(const Path& file, const std::string& content, const std::wstring& label = {});
    [[nodiscard]] static std::vector<Corvane::Itemstore::WebServices::Version> versionsOf(const Path& file);
    [[nodiscard]] static Corvane::Itemstore::WebServices::Attachment attachmentOf(const Path& file);
    /// Another client creates a version, by curl. False if the service refuses it, because another was
    /// quicker.
    bool makeVersionElsewhere(const Path& file, const std::string& content) const;
    [[nodiscard]] static std::string sha256(const std::string& content);

    void userAuthenticated(Vs::ItemhubEvent*) override { ++authenticated; }
    void onErrorMessage(Vs::ItemhubErrorEvent* event) override { errors.push_back(event->getErrorMessage()); }
    void onRecoveryMessage(Vs::ItemhubEvent*) override { ++recoveries; }
    void onRecoveryFileDeleted(Vs::ItemhubEvent*) override { ++deleted; }
    void favoritesChanged(Vs::ItemhubEvent*) override { ++favorites; }
    void searchResultsReceived(Vs::ItemhubSearchResultsEvent* event) override
    {
        results.emplace_back(event->query(), event->items().size());
    }
    void itemChanged(Vs::ItemhubItemEvent* event) override { kinds.push_back(event->kind()); }

    int authenticated = 0, recoveries = 0, deleted = 0, favorites = 0;
    std::vector<std::wstring> errors;
    std::vector<std::pair<std::wstring, size_t>> results;
    std::vector<std::string> kinds;

private:
    std::string m_account;
};

/// The kind of the exception that is thrown; nothing if it isn't one of the service's.
std::optional<Corvane::Itemstore::WebServices::ItemhubException::Kind>
kindOf(const std::function<void()>& action);
