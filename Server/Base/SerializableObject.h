#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/WeakRef.h"

#include <string>
#include <string_view>
#include <utility>

namespace Vs {

/// An object that a command takes as an argument and that a transcript can write and read back as text.
/// Whoever holds it without owning it uses a WeakRef.
class SerializableObject : public Implements<SerializableObject, Object, WeakTarget>
{
public:
    /// The text from which its factory recreates it.
    [[nodiscard]] virtual std::wstring serialize() const = 0;
    /// The name of that factory.
    virtual std::string factoryName() const = 0;
};

/// Makes one kind of serializable objects from text. Objects of static storage that register themselves by
/// name.
class SerializableObjectFactory
{
public:
    explicit SerializableObjectFactory(std::string name);
    virtual ~SerializableObjectFactory();
    SerializableObjectFactory(const SerializableObjectFactory&) = delete;
    SerializableObjectFactory& operator=(const SerializableObjectFactory&) = delete;

    const std::string& name() const { return m_name; }

    /// The factory of that name, or null.
    [[nodiscard]] static SerializableObjectFactory* findFactory(std::string_view name);

    /// The object that `text` stands for, or null. With `create` false only an object that exists already.
    /// What is returned is owned by whoever serves it (an asset type, a session) or lives as long as the
    /// process (an identifier): the caller never deletes it.
    [[nodiscard]] virtual SerializableObject* deserialize(const std::wstring& text, bool create) = 0;

private:
    std::string m_name;
};

/// An identifier as an argument. There is one object for each identifier.
class UniqueStringObject : public Implements<UniqueStringObject, SerializableObject>
{
public:
    static UniqueStringObject* get(const UniqueString* value);
    const UniqueString* value() const { return m_value; }
    [[nodiscard]] std::wstring serialize() const override;
    std::string factoryName() const override;

private:
    explicit UniqueStringObject(const UniqueString* value) : m_value(value) {}
    const UniqueString* m_value;
};

/// The factory called "UniqueStringSerializableObjectFactory".
class UniqueStringSerializableObjectFactory : public SerializableObjectFactory
{
public:
    static constexpr const char* kName = "UniqueStringSerializableObjectFactory";
    UniqueStringSerializableObjectFactory() : SerializableObjectFactory(kName) {}
    [[nodiscard]] SerializableObject* deserialize(const std::wstring& text, bool create) override;
};

/// A plain value as an argument, with a factory of the same name so that a transcript can write it: text as
/// it is, a number in a form that reads back exactly. Owned by whoever makes it.
template <class T>
class ValueObject : public Implements<ValueObject<T>, SerializableObject>
{
public:
    explicit ValueObject(T value) : m_value(std::move(value)) {}
    const T& value() const { return m_value; }
    [[nodiscard]] std::wstring serialize() const override;
    std::string factoryName() const override;

private:
    T m_value;
};

using WideStringObject = ValueObject<std::wstring>;
using IntObject = ValueObject<int>;
using DoubleObject = ValueObject<double>;

extern template class ValueObject<std::wstring>;
extern template class ValueObject<int>;
extern template class ValueObject<double>;

} // namespace Vs
