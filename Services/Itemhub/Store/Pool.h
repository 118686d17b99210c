#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <condition_variable>
#include <mutex>

namespace Itemhub::Store {

/// Connections for one purpose, lent to threads for as long as they need them. Thread-safe.
class Pool
{
public:
    /// @param most 0 for no limit
    Pool(const Database& database, Use use, int most);

    /// What a thread has borrowed, returned on destruction.
    class Loan
    {
    public:
        Loan(std::shared_ptr<Pool> pool, std::unique_ptr<Connection> connection);
        ~Loan();

        Loan(const Loan&) = delete;
        Loan& operator=(const Loan&) = delete;

        [[nodiscard]] Connection& connection() const { return *m_connection; }

    private:
        std::shared_ptr<Pool> m_pool;
        std::unique_ptr<Connection> m_connection;
    };

    /// @throws StoreError of kind Busy if none is returned in time
    [[nodiscard]] static std::unique_ptr<Loan> borrow(const std::shared_ptr<Pool>& pool);
    /// Lends one that was made elsewhere.
    [[nodiscard]] static std::unique_ptr<Loan> lend(const std::shared_ptr<Pool>& pool,
                                                    std::unique_ptr<Connection> connection);

private:
    std::unique_ptr<Connection> takeOrReserve();
    void takeBack(std::unique_ptr<Connection> connection);
    void forget();

    const Database& m_database;
    const Use m_use;
    const size_t m_most;
    std::mutex m_mutex;
    std::condition_variable m_given;
    std::vector<std::unique_ptr<Connection>> m_free;
    size_t m_count = 0; ///< Lent and free ones.
};

} // namespace Itemhub::Store
