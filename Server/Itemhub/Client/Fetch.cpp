#include "Server/Itemhub/Client/Fetch.h"

#include "Server/Itemhub/Client/Answers.h"

#include <cstdio>

namespace Vs::Itemhub {
namespace {

/// How often a connection may break off without delivering a single byte.
constexpr int kMostBreaks = 3;
constexpr int kPartialContent = 206;

} // namespace

Fetch::Fetch(Connections& connections, QUrl from, const Content& content, std::string action)
    : m_connections(connections), m_from(std::move(from)), m_content(content), m_action(std::move(action))
{
}

void Fetch::into(const std::string& file, const Watch& watch)
{
    const std::string unfinished = file + ".part";
    m_file.setFileName(QString::fromStdString(unfinished));
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered,
                     QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        throw Web::ItemhubException(Web::ItemhubException::Kind::Local,
                                    m_action + " failed: \"" + unfinished +
                                        "\" can't be written: " + m_file.errorString().toStdString());
    try {
        fetch(watch);
        checkWhole();
    } catch (...) {
        m_file.remove();
        throw;
    }
    m_file.close();
    if (std::rename(unfinished.c_str(), file.c_str()) != 0) {
        m_file.remove();
        throw Web::ItemhubException(Web::ItemhubException::Kind::Local,
                                    m_action + " failed: \"" + file + "\" can't be written");
    }
}

void Fetch::fetch(const Watch& watch)
{
    m_hash.emplace();
    for (int breaks = 0;;) {
        if (m_isFromTheStart && m_size > 0)
            beginAnew();
        const std::uint64_t before = m_size;
        Network::Request request{
            .method = "GET", .url = m_from, .sink = [this](const QByteArray& piece) { return take(piece); }};
        if (m_size > 0)
            request.headers.push_back({"Range", "bytes=" + QByteArray::number(m_size) + '-'});
        const Watch own{[&](std::uint64_t done, std::uint64_t) {
            return !watch.progress || watch.progress(before + done, m_content.size);
        }};
        const Network::Answer answer = m_connections.ask(request, own);
        if (!answer.isLost()) {
            Answers::check(answer, m_action);
            if (before > 0 && answer.status != kPartialContent)
                throw Web::PayloadException(m_action + " failed: the service doesn't go on where it was");
            return;
        }
        breaks = m_size > before && !m_isFromTheStart ? 0 : breaks + 1;
        if (breaks == kMostBreaks)
            Answers::check(answer, m_action);
    }
}

void Fetch::beginAnew()
{
    m_file.resize(0);
    m_file.seek(0);
    m_hash.emplace();
    m_size = 0;
}

Network::Result Fetch::take(const QByteArray& piece)
{
    m_size += static_cast<std::uint64_t>(piece.size());
    if (m_size > m_content.size)
        return {CloudErrorState::BadAnswer, "more was received than announced"};
    m_hash->add(piece);
    if (m_file.write(piece) != piece.size())
        return {CloudErrorState::CacheFailed, m_file.errorString().toStdString()};
    return {};
}

void Fetch::checkWhole()
{
    if (m_size != m_content.size)
        throw Web::PayloadException(m_action + " failed: less was received than announced");
    if (m_hash->digits() != m_content.sha256)
        throw Web::PayloadException(m_action +
                                    " failed: what was received has a different hash than announced");
}

} // namespace Vs::Itemhub
