#pragma once

#include <QProcess>

#include <string>

/// A server that a script of Tests/Support/Servers runs as long as this lives: a strict one of our own, or a
/// real one. The script says what orders it takes.
class ScriptedServer
{
public:
    explicit ScriptedServer(const char* script);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// With a slash at the end.
    const std::string& address() const { return m_address; }
    /// What isn't installed for it; empty if it runs.
    const std::string& missing() const { return m_missing; }
    /// Returns when it is done. On the thread that made this.
    void order(const std::string& order);

private:
    std::string line();

    QProcess m_process;
    std::string m_address, m_missing;
};
