#include "Server/Base/Object.h"

#include <boost/core/demangle.hpp>

namespace Vs {

const UniqueString* Object::interfaceId()
{
    static const UniqueString* const id = UniqueString::find("Vs::Object");
    return id;
}

const UniqueString* Object::getInterfaceId() const
{
    return interfaceId();
}

void* Object::queryInterface(const UniqueString* key) const
{
    return key == interfaceId() ? const_cast<Object*>(this) : nullptr;
}

const UniqueString* Detail::classInterfaceId(const std::type_info& type)
{
    return UniqueString::find(boost::core::demangle(type.name()));
}

} // namespace Vs
