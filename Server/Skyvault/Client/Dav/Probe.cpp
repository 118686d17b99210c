#include "Server/Skyvault/Client/Dav/Probe.h"

#include "Server/Skyvault/Client/Dav/Comments.h"
#include "Server/Skyvault/Client/Dav/Lock.h"
#include "Server/Skyvault/Client/Dav/ProbeFolder.h"

#include <algorithm>
#include <array>
#include <memory>
#include <thread>

namespace Vs::Cloud {

namespace {

constexpr std::chrono::hours kFresh{30 * 24};
// The size of a body to be cut: too large for any buffer to hold back.
constexpr qsizetype kCutBody = qsizetype(256) * 1024;
constexpr int kTries = 3, kPatience = 3;
constexpr std::chrono::milliseconds kPause{100};
constexpr std::chrono::milliseconds kShortTick{20}, kLongTick{1100};

/// Whether a response reflects the moment or something in between, and says nothing about the server's
/// behaviour.
bool isDisturbance(int status)
{
    return status == 0 || status == 401 || status == 407 || status == 408 || status == 429 ||
           (status >= 500 && status != 501);
}

/// The same for the resulting states. Nobody else has a lock in our own folder.
bool isDisturbance(CloudErrorState state)
{
    using enum CloudErrorState;
    return state == Unreachable || state == Cancelled || state == Unauthorized || state == TooManyRequests ||
           state == ServerError || state == BadAnswer || state == Redirected || state == Certificate ||
           state == DriveFull || state == Locked;
}

/// Tests one trait after the other. A trial returns what it saw the server do, or that it saw nothing.
class Probe
{
public:
    Probe(Session& session, const std::string& within, const DriveWatch& watch)
        : m_session(session),
          m_traits(session.traits),
          m_watch(watch),
          m_folder(session, within),
          m_one(m_folder.file("one")),
          m_two(m_folder.file("two"))
    {
    }

    DriveResult run();

private:
    using Trial = Trait (Probe::*)();

    /// Sends a request, and records a connection failure, which ends the whole probe.
    Answer ask(const char* method, const std::string& path, Headers headers = {},
               const QByteArray& body = {});
    bool put(const std::string& path, const QByteArray& content)
    {
        return ask("PUT", path, {}, content).isOk();
    }
    QByteArray content(const std::string& path) { return ask("GET", path).content; }
    std::string etag(const std::string& path);
    DriveResult noted(DriveResult result);
    bool goesOn();

    void decide(Trait& trait, Trial trial);
    void decideTick();
    Trait refusesExisting();
    Trait refusesStale();
    /// For a file that contains "first".
    Trait refuses(const std::string& file, const Headers& condition);
    Trait etagsDiffer();
    Trait etagsAreFine();
    Trait keepsOldOnBreak();
    Trait locks();
    /// Whether the lock just taken keeps others out; `before` is the file's ETag without it.
    Trait lockHolds(const std::string& before);
    Trait movesOntoExisting();
    Trait properties();

    Session& m_session;
    DriveTraits& m_traits;
    const DriveWatch& m_watch;
    const ProbeFolder m_folder;
    const std::string m_one, m_two;
    DriveTraits m_seen; ///< Traits that show in the responses along the way.
    int m_names = 0;
    DriveResult m_broken;
};

Answer Probe::ask(const char* method, const std::string& path, Headers headers, const QByteArray& body)
{
    if (!goesOn())
        return {.failure = m_broken};
    Answer answer = m_session.http.ask(
        {.method = method, .url = m_session.address.of(path), .headers = std::move(headers), .body = body},
        m_watch);
    if (answer.status == 0)
        m_broken = resultOf(answer, m_session.action("Trying what the server does in", m_folder.path()));
    if (const QByteArray name = answer.header("Server"); !name.isEmpty())
        m_traits.server = name.left(80).toStdString();
    if (answer.isOk() && std::string_view(method) == "PUT")
        m_seen.etagAfterPut = m_seen.etagAfterPut || !answer.header("ETag").isEmpty();
    return answer;
}

/// Records a connection failure, which leaves everything undecided.
DriveResult Probe::noted(DriveResult result)
{
    if (m_broken.isOk() &&
        (result.state == CloudErrorState::Unreachable || result.state == CloudErrorState::Cancelled))
        m_broken = result;
    return result;
}

bool Probe::goesOn()
{
    if (m_broken.isOk() && m_watch.progress && !m_watch.progress(0, 0))
        m_broken = {CloudErrorState::Cancelled, {}};
    return m_broken.isOk();
}

/// Empty without a response.
std::string Probe::etag(const std::string& path)
{
    DavItem item;
    if (!goesOn() || !noted(m_session.look(path, item)).isOk())
        return {};
    m_seen.etagFromPropfind = m_seen.etagFromPropfind || item.etagFromListing;
    m_seen.weakEtags = m_seen.weakEtags || item.entry.etag.starts_with("W/");
    return item.entry.etag;
}

/// A negative result may be due to a disturbance, so it only counts when seen twice.
void Probe::decide(Trait& trait, Trial trial)
{
    int refusals = 0;
    for (int i = 0; i < kTries && !trait.isKnown() && goesOn(); ++i) {
        const Trait seen = (this->*trial)();
        if (seen || (seen.isKnown() && ++refusals == 2))
            trait = seen;
    }
}

Trait Probe::refusesExisting()
{
    const std::string file = m_folder.file("new" + std::to_string(++m_names));
    const Headers condition{{"If-None-Match", "*"}};
    return ask("PUT", file, condition, "first").isOk() ? refuses(file, condition) : Trait();
}

Trait Probe::refusesStale()
{
    return put(m_one, "first") ? refuses(m_one, {{"If-Match", "\"quillet-stale\""}}) : Trait();
}

Trait Probe::refuses(const std::string& file, const Headers& condition)
{
    const int status = ask("PUT", file, condition, "other").status;
    const QByteArray kept = content(file);
    if (isDisturbance(status) || (kept != "first" && kept != "other"))
        return {};
    return status == 412 && kept == "first";
}

Trait Probe::etagsDiffer()
{
    // Two of the three may be separated by a clock tick.
    std::array<std::string, 3> etags;
    for (const char* const text : {"3rd", "4th", "5th"}) {
        if (!put(m_one, text))
            return {};
        etags[size_t(text[0] - '3')] = strongPart(etag(m_one));
    }
    if (std::any_of(etags.begin(), etags.end(), [](const auto& each) { return each.empty(); }))
        return {};
    return etags[0] != etags[1] && etags[1] != etags[2];
}

/// Whether ETags change with every tick of the clock that gives files their times, rather than with whole
/// seconds only.
Trait Probe::etagsAreFine()
{
    std::string before = strongPart(etag(m_one));
    for (const char* const text : {"6th", "7th"}) {
        std::this_thread::sleep_for(kShortTick);
        if (!put(m_one, text))
            return {};
        const std::string after = strongPart(etag(m_one));
        if (before.empty() || after.empty())
            return {};
        if (after == before)
            return false;
        before = after;
    }
    return true;
}

Trait Probe::keepsOldOnBreak()
{
    // A request that never reached the server proves nothing, and looks the same from here.
    for (const std::string& file : {m_one, m_two}) {
        if (!put(file, "whole"))
            return {};
        Request half{.method = "PUT", .url = m_session.address.of(file)};
        half.body = QByteArray(kCutBody, 'x');
        half.cutAfter = kCutBody / 2;
        const Answer answer = m_session.http.ask(std::move(half), m_watch);
        if (answer.status != 0 || answer.wasReset)
            return {};
    }
    // The server may not have noticed yet that the connections are gone.
    for (int i = 0; i < kPatience && goesOn(); ++i) {
        std::this_thread::sleep_for(kPause);
        std::vector<DriveEntry> kept;
        if (!noted(m_session.list(m_folder.path(), kept, m_watch)).isOk())
            return {};
        const auto isWhole = [](const DriveEntry& entry) { return entry.size == 5; };
        if (std::count_if(kept.begin(), kept.end(), [&](const DriveEntry& entry) {
                return (entry.path == m_one || entry.path == m_two) && isWhole(entry);
            }) < 2)
            return false;
    }
    return m_broken.isOk() ? Trait(true) : Trait();
}

// A single failure may be chance: a server that records two locks at once may lose one of them.
Trait Probe::locks()
{
    constexpr int kTimes = 3;
    Trait holds;
    for (int time = 0; time < kTimes && !holds; ++time) {
        if (!put(m_one, "whole"))
            return {};
        const std::string before = strongPart(etag(m_one));
        std::unique_ptr<Lock> lock;
        if (const DriveResult taken = noted(Lock::take(m_session, m_one, lock)); !taken.isOk())
            return isDisturbance(taken.state) ? Trait() : Trait(false);
        holds = lockHolds(before);
        if (!holds.isKnown())
            return {};
    }
    return holds;
}

Trait Probe::lockHolds(const std::string& before)
{
    // If a lock changes the ETag, nobody who holds it can tell whether somebody else has written.
    const std::string after = strongPart(etag(m_one));
    const int status = ask("PUT", m_one, {}, "other").status;
    const QByteArray kept = content(m_one);
    if (before.empty() || after.empty() || isDisturbance(status) || (kept != "whole" && kept != "other"))
        return {};
    return status == 423 && kept == "whole" && after == before;
}

Trait Probe::movesOntoExisting()
{
    if (!put(m_two, "moved here") || !put(m_one, "whole"))
        return {};
    std::unique_ptr<Lock> lock;
    if (m_traits.locks && !noted(Lock::take(m_session, m_one, lock)).isOk())
        return {};
    Headers headers{{"Destination", m_session.address.of(m_one).toEncoded()}, {"Overwrite", "T"}};
    if (lock)
        headers.push_back(lock->taggedCondition());
    const int status = ask("MOVE", m_two, headers).status;
    const QByteArray target = content(m_one);
    if (isDisturbance(status))
        return {};
    return target == "moved here";
}

Trait Probe::properties()
{
    if (!put(m_one, "remark") || !goesOn())
        return {};
    const DriveResult kept = noted(setRemark(m_session, m_one, "tried"));
    return isDisturbance(kept.state) ? Trait() : Trait(kept.isOk());
}

void Probe::decideTick()
{
    m_traits.etagTick = kLongTick;
    decide(m_traits.etagsDifferInOneTick, &Probe::etagsDiffer);
    if (m_traits.etagsDifferInOneTick) {
        m_traits.etagTick = {};
    } else if (m_traits.etagsDifferInOneTick.isKnown()) {
        Trait isFine;
        decide(isFine, &Probe::etagsAreFine);
        if (isFine)
            m_traits.etagTick = kShortTick;
    }
}

DriveResult Probe::run()
{
    const Answer made =
        m_session.http.ask({.method = "MKCOL", .url = m_session.address.of(m_folder.path(), true)}, m_watch);
    if (made.status == 0 || made.status == 401)
        return resultOf(made, m_session.action("Making the folder", m_folder.path()));
    // A user who can only read here may have more rights elsewhere, or later.
    if (!made.isOk())
        return {};
    static_cast<void>(noted(m_folder.removeOthers(m_watch)));
    decide(m_traits.refusesExisting, &Probe::refusesExisting);
    decide(m_traits.refusesStale, &Probe::refusesStale);
    if (!m_traits.etagsDifferInOneTick.isKnown())
        decideTick();
    decide(m_traits.keepsOldOnBreak, &Probe::keepsOldOnBreak);
    decide(m_traits.locks, &Probe::locks);
    decide(m_traits.movesOntoExisting, &Probe::movesOntoExisting);
    decide(m_traits.properties, &Probe::properties);
    if (!m_seen.weakEtags.isKnown())
        static_cast<void>(etagsDiffer());
    for (const auto trait :
         {&DriveTraits::weakEtags, &DriveTraits::etagAfterPut, &DriveTraits::etagFromPropfind}) {
        if (m_broken.isOk() && !(m_traits.*trait).isKnown())
            m_traits.*trait = m_seen.*trait;
    }
    return m_broken;
}

} // namespace

DriveResult probe(Session& session, const std::string& within, const DriveWatch& watch)
{
    DriveResult result = Probe(session, within, watch).run();
    if (session.traits.isKnown())
        session.traits.probed = std::chrono::system_clock::now();
    return result;
}

bool isFresh(const DriveTraits& traits)
{
    // A time in the future comes from a clock that has been set back since.
    const auto age = std::chrono::system_clock::now() - traits.probed;
    return age < kFresh && age > -std::chrono::hours(24);
}

} // namespace Vs::Cloud
