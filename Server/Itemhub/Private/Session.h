#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <memory>
#include <mutex>
#include <string>

namespace Vs::Itemhub {

/// Who is signed in where. Any thread; begin and end are the main thread's.
class Session
{
public:
    struct Facts
    {
        Account account;
        std::string address; ///< As signed in to; empty for the program's own service.
        std::string name;    ///< Of the account's folder on this machine; the same in every run.
        bool isOwn = false;
        bool isKept = false;
    };

    static Session& get();

    void begin(std::shared_ptr<ItemStore> store, Facts facts, bool isOnline);
    /// Gives the store back whose session ended; null if there was none.
    std::shared_ptr<ItemStore> end();

    /// Null while nobody is signed in. It goes on to be there for whoever holds it.
    [[nodiscard]] std::shared_ptr<ItemStore> store() const;
    /// Throws ItemhubException of the kind NotSignedIn instead.
    [[nodiscard]] std::shared_ptr<ItemStore> needed() const;
    [[nodiscard]] Facts facts() const;
    void kept(bool isKept);

    /// Whether the service answered last.
    [[nodiscard]] bool isOnline() const;
    /// A request of that store was answered, or wasn't. A change is told on the main thread.
    void answered(const ItemStore* store, bool wasAnswered);

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<ItemStore> m_store;
    Facts m_facts;
    bool m_isOnline = false;
};

} // namespace Vs::Itemhub
