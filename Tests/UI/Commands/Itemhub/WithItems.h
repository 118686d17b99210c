#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Tests/Support/Servers/ItemService.h"
#include "Tests/UI/Commands/Recorded.h"

#include <functional>
#include <string>
#include <vector>

namespace CommandsTests {

/// A user with a separate account, signed in to a real lifecycle service that the tests of the process share.
class WithItems : public Recorded, public Vs::ItemhubEventSite
{
protected:
    void SetUp() override;
    void TearDown() override;

    static TestSupport::ItemService& service();
    static Vs::ItemhubUtilities& hub() { return *Vs::ItemhubUtilities::get(); }
    const std::string& account() const { return m_account; }
    const std::string& token() const { return m_token; }
    /// With the line that the web pages use.
    std::wstring signInLine() const;

    /// Runs the main loop until `holds`, or gives up after a while.
    static bool until(const std::function<bool()>& holds);
    /// Whether everything saved reaches the service.
    static bool arrives() { return hub().waitForUploads(std::chrono::seconds(30)); }

    /// Creates an item with a box in it, whose versions have arrived, by lines; it is the shown document.
    static int newItem(const std::wstring& caption);
    static int itemOfShown();
    /// The labels of an item's versions, the newest first.
    static std::vector<std::string> labels(int item);
    /// The address of an item's first attachment.
    static std::wstring addressOf(int item);

    /// The message to the user.
    const std::vector<std::wstring>& told() const { return m_told; }
    void forgetTold() { m_told.clear(); }

    void onErrorMessage(Vs::ItemhubErrorEvent* event) override { m_told.push_back(event->getErrorMessage()); }
    void onRecoveryMessage(Vs::ItemhubEvent*) override { ++recoveries; }

    int recoveries = 0;

private:
    std::string m_account, m_token;
    std::vector<std::wstring> m_told;
};

} // namespace CommandsTests
