#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <memory>
#include <mutex>
#include <string>

namespace Vs::Itemhub {

/// Who is signed in and where. Any thread; begin and end on the main thread only.
class Session
{
public:
    struct Facts
    {
        Account account;
        std::string address; ///< As signed in to; empty for the program's own service.
        std::string name;    ///< The name of the account's folder on this machine; the same in every run.
        bool isOwn = false;
        bool isKept = false;
    };

    static Session& get();

    void begin(std::shared_ptr<ItemStore> store, Facts facts, bool isOnline);
    /// Returns the store of the ended session; null if there was none.
    std::shared_ptr<ItemStore> end();

    /// Null while nobody is signed in. The store lives as long as somebody holds it.
    [[nodiscard]] std::shared_ptr<ItemStore> store() const;
    /// The same, but throws ItemhubException of the kind NotSignedIn instead of returning null.
    [[nodiscard]] std::shared_ptr<ItemStore> needed() const;
    [[nodiscard]] Facts facts() const;
    void kept(bool isKept);

    /// Whether the service responded last time.
    [[nodiscard]] bool isOnline() const;
    /// Notes whether a request of that store was answered. A change is reported on the main thread.
    void answered(const ItemStore* store, bool wasAnswered);

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<ItemStore> m_store;
    Facts m_facts;
    bool m_isOnline = false;
};

} // namespace Vs::Itemhub
