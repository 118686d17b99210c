#include "Server/Base/SerializableObject.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Vs {

namespace {

// Never destroyed: factories are statics of many libraries and unregister in any order.
std::vector<SerializableObjectFactory*>& factories()
{
    static auto& all = *new std::vector<SerializableObjectFactory*>;
    return all;
}

template <class T>
struct ValueForm;

template <>
struct ValueForm<std::wstring>
{
    static constexpr const char* kName = "WideStringSerializableObjectFactory";
    static std::wstring write(const std::wstring& value) { return value; }
    static bool read(const std::wstring& text, std::wstring& value)
    {
        value = text;
        return true;
    }
};

template <class Number>
struct NumberForm
{
    static std::wstring write(Number value) { return numberText(value); }
    static bool read(const std::wstring& text, Number& value)
    {
        const std::optional<Number> number = readNumber<Number>(text);
        value = number.value_or(value);
        return number.has_value();
    }
};

template <>
struct ValueForm<int> : NumberForm<int>
{
    static constexpr const char* kName = "IntSerializableObjectFactory";
};

template <>
struct ValueForm<double> : NumberForm<double>
{
    static constexpr const char* kName = "DoubleSerializableObjectFactory";
};

/// One object for each text that was ever asked for: whoever gets one never deletes it.
template <class T>
class ValueFactory : public SerializableObjectFactory
{
public:
    ValueFactory() : SerializableObjectFactory(ValueForm<T>::kName) {}
    SerializableObject* deserialize(const std::wstring& text, bool) override
    {
        const auto found = m_objects.find(text);
        if (found != m_objects.end())
            return found->second.get();
        T value{};
        if (!ValueForm<T>::read(text, value))
            return nullptr;
        return m_objects.emplace(text, std::make_unique<ValueObject<T>>(std::move(value)))
            .first->second.get();
    }

private:
    std::unordered_map<std::wstring, std::unique_ptr<ValueObject<T>>> m_objects;
};

struct OwnFactories
{
    UniqueStringSerializableObjectFactory identifiers;
    ValueFactory<std::wstring> texts;
    ValueFactory<int> integers;
    ValueFactory<double> reals;
};

} // namespace

SerializableObjectFactory::SerializableObjectFactory(std::string name) : m_name(std::move(name))
{
    assertMainThread();
    require(!m_name.empty(), "a factory has a name, by which it is found");
    factories().push_back(this);
}

SerializableObjectFactory::~SerializableObjectFactory()
{
    std::erase(factories(), this);
}

SerializableObjectFactory* SerializableObjectFactory::findFactory(std::string_view name)
{
    static OwnFactories& own = *new OwnFactories;
    (void)own;
    const auto& all = factories();
    const auto found = std::find_if(all.begin(), all.end(), [&](auto* each) { return each->name() == name; });
    return found == all.end() ? nullptr : *found;
}

UniqueStringObject* UniqueStringObject::get(const UniqueString* value)
{
    assertMainThread();
    static auto& all = *new std::unordered_map<const UniqueString*, std::unique_ptr<UniqueStringObject>>;
    if (!value)
        return nullptr;
    std::unique_ptr<UniqueStringObject>& object = all[value];
    if (!object)
        object.reset(new UniqueStringObject(value));
    return object.get();
}

std::wstring UniqueStringObject::serialize() const
{
    return m_value->wideText();
}

std::string UniqueStringObject::factoryName() const
{
    return UniqueStringSerializableObjectFactory::kName;
}

SerializableObject* UniqueStringSerializableObjectFactory::deserialize(const std::wstring& text, bool create)
{
    return text.empty() ? nullptr
                        : UniqueStringObject::get(UniqueString::find(Strings::narrow(text), create));
}

template <class T>
std::wstring ValueObject<T>::serialize() const
{
    return ValueForm<T>::write(m_value);
}

template <class T>
std::string ValueObject<T>::factoryName() const
{
    return ValueForm<T>::kName;
}

template class ValueObject<std::wstring>;
template class ValueObject<int>;
template class ValueObject<double>;

} // namespace Vs
