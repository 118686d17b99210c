#include "Server/Skyvault/Client/Dav/Probe.h"

#include "Server/Skyvault/Client/Dav/Comments.h"
#include "Server/Skyvault/Client/Dav/Lock.h"

#include <QUuid>

#include <memory>
#include <thread>

namespace Vs::Cloud {

namespace {

constexpr std::chrono::hours kFresh{30 * 24};
// Of a body that is cut: so much that no buffer holds it back.
constexpr qsizetype kCutBody = 256 * 1024;
constexpr int kPatience = 5;
constexpr std::chrono::milliseconds kPause{60};
constexpr std::chrono::milliseconds kShortTick{20}, kLongTick{1100};

/// The probe's folder, as long as this lives.
class ProbeFolder
{
public:
    explicit ProbeFolder(Session& session)
        : m_session(session),
          m_path("/" + ownPrefix() + "probe-" +
                 QUuid::createUuid().toString(QUuid::Id128).left(12).toStdString())
    {
    }
    ~ProbeFolder()
    {
        // A lost answer is worth a second try: nothing of ours is to stay.
        const Answer gone =
            m_session.http.ask({.method = "DELETE", .url = m_session.address.of(m_path, true)});
        if (gone.isLost())
            static_cast<void>(
                m_session.http.ask({.method = "DELETE", .url = m_session.address.of(m_path, true)}));
    }
    ProbeFolder(const ProbeFolder&) = delete;
    ProbeFolder& operator=(const ProbeFolder&) = delete;

    std::string file(const char* name) const { return joined(m_path, name); }
    const std::string& path() const { return m_path; }

private:
    Session& m_session;
    const std::string m_path;
};

class Probe
{
public:
    Probe(Session& session, DriveTraits& traits, const DriveWatch& watch)
        : m_session(session),
          m_traits(traits),
          m_watch(watch),
          m_folder(session),
          m_one(m_folder.file("one")),
          m_two(m_folder.file("two"))
    {
    }

    DriveResult run();

private:
    /// Asks, and notes what broke off the whole probe.
    Answer ask(const char* method, const std::string& path, Headers headers = {},
               const QByteArray& body = {});
    Answer put(const QByteArray& content, Headers headers = {})
    {
        return ask("PUT", m_one, headers, content);
    }
    std::string etag(bool& byPropfind);
    bool goesOn();

    void existing();
    void etags();
    void breaks();
    void lockAndMove();

    Session& m_session;
    DriveTraits& m_traits;
    const DriveWatch& m_watch;
    const ProbeFolder m_folder;
    const std::string m_one, m_two;
    DriveResult m_broken;
};

Answer Probe::ask(const char* method, const std::string& path, Headers headers, const QByteArray& body)
{
    if (!m_broken.isOk())
        return {.failure = m_broken};
    Answer answer = m_session.http.ask(
        {.method = method, .url = m_session.address.of(path), .headers = std::move(headers), .body = body},
        m_watch);
    if (answer.status == 0 || answer.status == 429 || answer.status == 401)
        m_broken = resultOf(answer, m_session.action("Trying what the server does in", m_folder.path()));
    if (const QByteArray name = answer.header("Server"); !name.isEmpty())
        m_traits.server = name.left(80).toStdString();
    return answer;
}

bool Probe::goesOn()
{
    if (m_broken.isOk() && m_watch.progress && !m_watch.progress(0, 0))
        m_broken = {CloudErrorState::Cancelled, {}};
    return m_broken.isOk();
}

std::string Probe::etag(bool& byPropfind)
{
    DavItem item;
    if (m_session.look(m_one, item).isOk())
        byPropfind = item.etagFromListing;
    return item.entry.etag;
}

void Probe::existing()
{
    const Answer first = put("first", {{"If-None-Match", "*"}});
    m_traits.etagAfterPut = !first.header("ETag").isEmpty();
    m_traits.refusesExisting = first.isOk() && put("other", {{"If-None-Match", "*"}}).status == 412;
}

void Probe::etags()
{
    put("third");
    const std::string before = etag(m_traits.etagFromPropfind);
    put("4th..");
    const std::string after = etag(m_traits.etagFromPropfind);
    m_traits.etagsDifferInOneTick = !before.empty() && strongPart(before) != strongPart(after);
    if (!m_traits.etagsDifferInOneTick) {
        // By the step of the clock that files have their times from, or by whole seconds.
        m_traits.etagTick = kLongTick;
        std::this_thread::sleep_for(kShortTick);
        put("5th..");
        if (strongPart(etag(m_traits.etagFromPropfind)) != strongPart(after))
            m_traits.etagTick = kShortTick;
    }
    m_traits.weakEtags = after.starts_with("W/");
    m_traits.refusesStale = put("stale", {{"If-Match", "\"quillet-stale\""}}).status == 412;
}

void Probe::breaks()
{
    put("whole");
    Request half{.method = "PUT", .url = m_session.address.of(m_one)};
    half.body = QByteArray(kCutBody, 'x');
    half.cutAfter = kCutBody / 2;
    static_cast<void>(m_session.http.ask(std::move(half), m_watch));
    m_traits.keepsOldOnBreak = true;
    // The server may not have seen yet that the connection is gone.
    for (int i = 0; i < kPatience && m_traits.keepsOldOnBreak && goesOn(); ++i) {
        DriveEntry kept;
        m_traits.keepsOldOnBreak = m_session.find(m_one, kept).isOk() && kept.size == 5;
        std::this_thread::sleep_for(kPause);
    }
}

void Probe::lockAndMove()
{
    ask("PUT", m_two, {}, "moved here");
    put("whole");
    std::unique_ptr<Lock> lock;
    bool unused = false;
    const std::string before = etag(unused);
    if (Lock::take(m_session, m_one, lock).isOk()) {
        m_traits.etagChangesByLock = strongPart(etag(unused)) != strongPart(before);
        m_traits.locks = put("locked").status == 423;
    }
    Headers headers{{"Destination", m_session.address.of(m_one).toEncoded()}, {"Overwrite", "T"}};
    if (lock)
        headers.push_back(lock->taggedCondition());
    const Answer moved = ask("MOVE", m_two, headers);
    DriveEntry target;
    m_traits.movesOntoExisting =
        moved.isOk() && m_session.find(m_one, target).isOk() && target.size == sizeof("moved here") - 1;
}

DriveResult Probe::run()
{
    const Answer made =
        m_session.http.ask({.method = "MKCOL", .url = m_session.address.of(m_folder.path(), true)}, m_watch);
    if (made.status == 0 || made.status == 401 || made.status == 429)
        return resultOf(made, m_session.action("Making the folder", m_folder.path()));
    if (!made.isOk())
        return {}; // Whoever may only read needs nothing of all this.
    for (const auto part : {&Probe::existing, &Probe::etags, &Probe::breaks, &Probe::lockAndMove}) {
        if (!goesOn())
            return m_broken;
        (this->*part)();
    }
    const std::string last = m_folder.file("three");
    ask("PUT", last, {}, "remark");
    m_traits.properties = goesOn() && setRemark(m_session, last, "tried").isOk();
    return m_broken;
}

} // namespace

DriveResult probe(Session& session, DriveTraits& traits, const DriveWatch& watch)
{
    DriveTraits found;
    DriveResult result = Probe(session, found, watch).run();
    if (!result.isOk())
        return result;
    found.probed = std::chrono::system_clock::now();
    traits = found;
    return {};
}

bool isFresh(const DriveTraits& traits)
{
    // A time to come is that of a clock which has been set since.
    const auto age = std::chrono::system_clock::now() - traits.probed;
    return age < kFresh && age > -std::chrono::hours(24);
}

} // namespace Vs::Cloud
