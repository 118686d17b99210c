#include "Tests/Server/Skyvault/Client/ScriptedServer.h"

#include <cstring>
#include <gtest/gtest.h>

ScriptedServer::ScriptedServer(const char* script)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QUILLET_TEST_SUPPORT "/as_plain_user.sh",
                    {QUILLET_PYTHON, "-B", QUILLET_TEST_SUPPORT "/Servers/" + QString::fromLatin1(script)});
    m_address = line();
    if (m_address.starts_with("missing "))
        m_missing = m_address.substr(std::strlen("missing "));
}

ScriptedServer::~ScriptedServer()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

void ScriptedServer::order(const std::string& order)
{
    m_process.write(QByteArray::fromStdString(order + '\n'));
    EXPECT_EQ(line(), "done");
}

std::string ScriptedServer::line()
{
    while (!m_process.canReadLine() && m_process.waitForReadyRead(120000)) {
    }
    return m_process.readLine().trimmed().toStdString();
}
