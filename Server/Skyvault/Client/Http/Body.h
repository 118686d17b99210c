#pragma once

#include "Server/Skyvault/Client/Http/Request.h"

#include <QFile>
#include <QIODevice>

namespace Vs::Cloud {

/// What a request sends. Qt sends a request anew by itself when its connection ends before an answer, and
/// begins at the start of the body for that, of an empty one too; this body doesn't go back to its start, so
/// that nothing is repeated unless the server asked for it. A MOVE that is done twice has cost both files.
class Body : public QIODevice
{
public:
    explicit Body(const Request& request);

    /// Empty if the body can be read.
    const std::string& trouble() const { return m_trouble; }
    /// Allows one way back to the start: the server has refused the request and asks who we are.
    void allowRewind() { m_rewinds = 1; }
    /// Called when all has been read that is to be sent before the connection is cut.
    void atCut(std::function<void()> function) { m_atCut = std::move(function); }

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_size; }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char* data, qint64 most) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QFile m_file;
    QByteArray m_bytes;
    qint64 m_offset = 0, m_size = 0, m_position = 0;
    std::optional<qint64> m_cut;
    std::function<void()> m_atCut;
    int m_rewinds = 0;
    std::string m_trouble;
};

} // namespace Vs::Cloud
