#include "Server/Skyvault/Client/Dav/Aside.h"

#include "Server/Skyvault/Client/Dav/KeepOther.h"

namespace Vs::Cloud {

namespace {

// Servers report times in whole seconds.
constexpr std::chrono::seconds kOlder{2};

} // namespace

Aside::Aside(Session& session, DriveEntry known, std::string path)
    : m_session(session), m_known(std::move(known)), m_path(std::move(path))
{
}

DriveResult Aside::take(Session& session, const DriveEntry& known, std::unique_ptr<Aside>& aside)
{
    const std::string copy = nameOfNewCopy(session, known);
    if (copy.empty())
        return failed(CloudErrorState::NotKept, session.action("Moving aside", known.path),
                      "too many copies are there");
    std::unique_ptr<Aside> made(new Aside(session, known, copy));
    DriveResult moved = made->move(known.path, copy);
    if (moved.state == CloudErrorState::NotFound)
        return {};
    if (moved.isOk())
        aside = std::move(made);
    return moved;
}

DriveResult Aside::move(const std::string& from, const std::string& to) const
{
    const Answer answer = m_session.ask(
        "MOVE", from, {{"Destination", m_session.address.of(to).toEncoded()}, {"Overwrite", "F"}});
    DriveEntry there;
    if (answer.isLost() && m_session.find(to, there).isOk())
        return {};
    return resultOf(answer, m_session.action("Moving aside", from));
}

void Aside::giveBack()
{
    DriveEntry there;
    if (m_session.find(m_known.path, there).state == CloudErrorState::NotFound)
        static_cast<void>(move(m_path, m_known.path));
}

void Aside::drop(const DriveEntry& after)
{
    DriveEntry moved;
    if (!m_session.find(m_path, moved).isOk())
        return;
    // On some servers the ETag also depends on the name. Then size and time decide, unless both versions are
    // of the same moment.
    const bool hasSameEtag = !moved.etag.empty() && strongPart(moved.etag) == strongPart(m_known.etag);
    const bool isSame = moved.size == m_known.size && moved.modified == m_known.modified &&
                        moved.modified + kOlder < after.modified;
    if (hasSameEtag || isSame)
        static_cast<void>(m_session.remove(m_path));
}

} // namespace Vs::Cloud
