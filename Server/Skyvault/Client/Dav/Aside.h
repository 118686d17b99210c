#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <memory>
#include <string>

namespace Vs::Cloud {

/// Whatever has the file's name on the server, moved to the name of a copy beside it until the new version is
/// in place. For servers that neither lock nor refuse: anything somebody else writes before the move is in
/// the moved file, and not overwritten. If the program is killed meanwhile, the copy stays where everybody
/// can see it.
class Aside
{
public:
    /// Moves `known` aside, or whatever has replaced it. There is no Aside if nothing had the name any more.
    static DriveResult take(Session& session, const DriveEntry& known, std::unique_ptr<Aside>& aside);

    /// Moves it back unless the name has been taken meanwhile.
    void giveBack();
    /// Removes it if it is the known version; if it is somebody else's, it stays as a copy. `after` is the
    /// new version, whose time tells the server's clock.
    void drop(const DriveEntry& after);

private:
    Aside(Session& session, DriveEntry known, std::string path);
    DriveResult move(const std::string& from, const std::string& to) const;

    Session& m_session;
    const DriveEntry m_known;
    const std::string m_path;
};

} // namespace Vs::Cloud
