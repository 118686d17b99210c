#include "Server/Types/Uuid.h"

#include "Server/Base/Strings.h"

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <stdexcept>

namespace Vs {

boost::uuids::uuid makeUuid()
{
    return boost::uuids::random_generator()();
}

std::wstring fromUuid(const boost::uuids::uuid& uuid)
{
    return boost::uuids::to_wstring(uuid);
}

boost::uuids::uuid fromString(const std::wstring& text)
{
    try {
        return boost::uuids::string_generator()(Strings::narrow(text));
    } catch (const std::runtime_error&) {
        return {};
    }
}

} // namespace Vs
