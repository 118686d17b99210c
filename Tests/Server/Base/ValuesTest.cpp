#include "Server/Base/QtText.h"
#include "Server/Base/SerializableObject.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"

#include <gtest/gtest.h>
#include <limits>
#include <memory>

namespace {

using Vs::SerializableObjectFactory;

template <class T>
T backAndForth(const T& value)
{
    const Vs::ValueObject<T> object(value);
    auto* factory = SerializableObjectFactory::findFactory(object.factoryName());
    auto* again =
        factory ? Vs::cast<Vs::ValueObject<T>>(factory->deserialize(object.serialize(), true)) : nullptr;
    return again ? again->value() : T();
}

TEST(ValuesTest, ReadBackExactlyFromTheirText)
{
    for (const double value : {0.0, -0.1, 1.0 / 3, 1e300, 5e-324, std::numeric_limits<double>::max()})
        EXPECT_EQ(backAndForth(value), value);
    for (const int value : {0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(backAndForth(value), value);
    EXPECT_EQ(backAndForth(std::wstring(L" a\"b ")), L" a\"b ");
    for (const wchar_t* wrong : {L"", L"1x", L" 1", L"99999999999"})
        EXPECT_EQ(
            SerializableObjectFactory::findFactory("IntSerializableObjectFactory")->deserialize(wrong, true),
            nullptr);
}

TEST(ValuesTest, OfIdentifiersAreOneObjectEach)
{
    auto* factory = SerializableObjectFactory::findFactory("UniqueStringSerializableObjectFactory");
    ASSERT_NE(factory, nullptr);
    EXPECT_EQ(factory->deserialize(L"ValuesTest.unheard", false), nullptr);
    EXPECT_EQ(factory->deserialize(L"", true), nullptr);
    Vs::SerializableObject* object = factory->deserialize(L"ValuesTest.größe", true);
    EXPECT_EQ(object, factory->deserialize(L"ValuesTest.größe", false));
    auto* identifier = Vs::cast<Vs::UniqueStringObject>(object);
    ASSERT_NE(identifier, nullptr);
    EXPECT_EQ(identifier->serialize(), L"ValuesTest.größe");
    EXPECT_EQ(identifier->value(), Vs::UniqueString::find("ValuesTest.größe", false));
    EXPECT_EQ(Vs::cast<Vs::IntObject>(object), nullptr);
}

TEST(ValuesTest, AreServedByTheFactoryOfTheirNameWhileItLives)
{
    class Own : public SerializableObjectFactory
    {
    public:
        Own() : SerializableObjectFactory("ValuesTestFactory") {}
        Vs::SerializableObject* deserialize(const std::wstring&, bool) override { return nullptr; }
    };
    {
        Own own;
        EXPECT_EQ(SerializableObjectFactory::findFactory("ValuesTestFactory"), &own);
    }
    EXPECT_EQ(SerializableObjectFactory::findFactory("ValuesTestFactory"), nullptr);
}

TEST(WeakRefTest, KnowsWhetherItsObjectIsGone)
{
    const Vs::WeakRef<Vs::IntObject> none;
    EXPECT_EQ(none.get(), nullptr);
    EXPECT_FALSE(none.lost()) << "there never was one";
    auto object = std::make_unique<Vs::IntObject>(3);
    const Vs::WeakRef<Vs::IntObject> first(object.get());
    const Vs::WeakRef<Vs::IntObject> second = first;
    EXPECT_EQ(second.get(), object.get());
    object.reset();
    for (const auto* each : {&first, &second}) {
        EXPECT_EQ(each->get(), nullptr);
        EXPECT_TRUE(each->lost());
    }
}

TEST(StringsTest, MakeReplacementsOfWhatIsNoUtf8)
{
    EXPECT_EQ(Vs::Strings::widen("a\xC3\xA4\xF0\x9F\x98\x80"), L"aä\U0001F600");
    EXPECT_EQ(Vs::Strings::widen("\xC0\x80|\xED\xA0\x80|\xF5"), L"\xFFFD\xFFFD|\xFFFD\xFFFD\xFFFD|\xFFFD");
    EXPECT_EQ(Vs::Strings::narrow(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

TEST(StringsTest, KeepTheBytesOfAFilesNameOnTheWayThere)
{
    using namespace Vs::Strings;
    for (const std::string bytes :
         {"plain",
          "gr\xC3\xB6\xC3\x9F"
          "e",
          "gr\xF6\xDF"
          "e",
          "\xFF\x80|\xC3", "\xED\xB2\x80", "\xF0\x9F\x98", "\xF0\x9F\x98\x80\xF0"}) {
        const std::wstring wide = fromBytes(bytes);
        EXPECT_EQ(toBytes(wide), bytes);
        EXPECT_EQ(narrow(wide), narrow(widen(bytes))) << "a text for people has nothing that isn't UTF-8";
        EXPECT_EQ(Vs::wideText(QString::fromStdWString(wide)), wide);
    }
    EXPECT_EQ(fromBytes("a\xFF"), L"a\xDCFF");
    // The result contains only such bytes: no separator, and no terminator.
    for (const wchar_t value :
         {wchar_t(0xDC00), wchar_t(0xDC2F), wchar_t(0xDC7F), wchar_t(0xDD00), wchar_t(0xD880)})
        EXPECT_EQ(toBytes(std::wstring(1, value)), "\xEF\xBF\xBD");
}

TEST(StatusTest, KeepsErrorsBeforeWarnings)
{
    Vs::Status status;
    status.addWarning(L"careful");
    EXPECT_TRUE(status.isOk());
    EXPECT_EQ(status.toString(), L"careful");
    Vs::Status other;
    other.addError(L"broken");
    other.reported(true);
    status.merge(other);
    EXPECT_EQ(status.toString(), L"broken");
    EXPECT_TRUE(status.reported() && status.matchingError("brok") && !status.matchingError("careful"));
    status.clear();
    EXPECT_TRUE(status.isOk() && status.toString().empty() && !status.reported());
}

} // namespace
