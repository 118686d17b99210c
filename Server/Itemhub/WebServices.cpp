#include "Server/Itemhub/WebServices.h"

namespace Corvane::Itemstore::WebServices {

PayloadException::~PayloadException() = default;

ItemhubException::ItemhubException(Kind kind, const std::string& message, Version latest,
                                   std::source_location where)
    : Exception(message, where), m_kind(kind), m_latest(std::move(latest))
{
}

ItemhubException::~ItemhubException() = default;

ConnectionException::~ConnectionException() = default;

} // namespace Corvane::Itemstore::WebServices
