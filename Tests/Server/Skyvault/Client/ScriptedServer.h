#pragma once

#include <QProcess>

#include <string>

/// A server run by a script of Tests/Support/Servers as long as this lives: a strict one of our own, or a
/// real one. The script documents its commands.
class ScriptedServer
{
public:
    explicit ScriptedServer(const char* script);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// With a slash at the end.
    const std::string& address() const { return m_address; }
    /// What it lacks on this machine; empty if it runs.
    const std::string& missing() const { return m_missing; }
    /// Returns when it is done. On the thread that created this.
    void order(const std::string& order);

private:
    std::string line();

    QProcess m_process;
    std::string m_address, m_missing;
};
