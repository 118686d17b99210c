#include "Services/Itemhub/Store/Pool.h"

#include <chrono>

namespace Itemhub::Store {

Pool::Pool(const Database& database, Use use, int most)
    : m_database(database), m_use(use), m_most(static_cast<size_t>(most))
{
}

std::unique_ptr<Connection> Pool::takeOrReserve()
{
    std::unique_lock lock(m_mutex);
    const auto isThere = [this] { return !m_free.empty() || m_most == 0 || m_count < m_most; };
    if (!m_given.wait_for(lock, std::chrono::milliseconds(m_database.options().patienceMs), isThere))
        throw StoreError(StoreError::Kind::Busy, "All connections to the database are in use.");
    if (m_free.empty()) {
        ++m_count;
        return nullptr;
    }
    // The most recently used one, so that superfluous ones show as idle.
    auto connection = std::move(m_free.back());
    m_free.pop_back();
    return connection;
}

void Pool::forget()
{
    {
        const std::lock_guard lock(m_mutex);
        --m_count;
    }
    m_given.notify_one();
}

void Pool::takeBack(std::unique_ptr<Connection> connection)
{
    if (!connection->isGood()) {
        connection.reset();
        forget();
        return;
    }
    connection->leave();
    {
        const std::lock_guard lock(m_mutex);
        m_free.push_back(std::move(connection));
    }
    m_given.notify_one();
}

std::unique_ptr<Pool::Loan> Pool::borrow(const std::shared_ptr<Pool>& pool)
{
    auto connection = pool->takeOrReserve();
    if (connection) {
        connection->arrive();
    } else {
        try {
            connection = std::make_unique<Connection>(pool->m_database, pool->m_use);
        } catch (...) {
            pool->forget();
            throw;
        }
    }
    return std::make_unique<Loan>(pool, std::move(connection));
}

std::unique_ptr<Pool::Loan> Pool::lend(const std::shared_ptr<Pool>& pool,
                                       std::unique_ptr<Connection> connection)
{
    {
        const std::lock_guard lock(pool->m_mutex);
        ++pool->m_count;
    }
    return std::make_unique<Loan>(pool, std::move(connection));
}

Pool::Loan::Loan(std::shared_ptr<Pool> pool, std::unique_ptr<Connection> connection)
    : m_pool(std::move(pool)), m_connection(std::move(connection))
{
}

Pool::Loan::~Loan()
{
    m_pool->takeBack(std::move(m_connection));
}

} // namespace Itemhub::Store
