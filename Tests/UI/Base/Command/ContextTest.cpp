#include "Server/Base/SerializableObject.h"
#include "Tests/UI/Base/Command/Recorder.h"
#include "UI/Base/Command/CommandContext.h"

#include <gtest/gtest.h>

using namespace Vu;
using EArgType = CommandContext::EArgType;

namespace {

const Vs::UniqueString* key(const char* name)
{
    return Vs::UniqueString::find(name);
}

/// Belongs to its creator.
class Named : public Vs::Implements<Named, Vs::SerializableObject>
{
public:
    std::wstring serialize() const override { return L"asset 1"; }
    std::string factoryName() const override { return "Named"; }
};

/// Counts its references.
class Counted : public Named, public Vs::SharedObject
{
public:
    explicit Counted(bool* gone) : m_gone(gone) {}
    ~Counted() override { *m_gone = true; }
    const Vs::UniqueString* getInterfaceId() const override { return Named::getInterfaceId(); }
    void* queryInterface(const Vs::UniqueString* key) const override { return Named::queryInterface(key); }

private:
    bool* m_gone;
};

} // namespace

TEST(Context, HoldsArgumentsOfEachKindUnderTheirKeys)
{
    CommandContext context;
    Named object;
    context.addArgument(key("Hidden"), 1);
    context.addArgument(key("Factor"), 2.5);
    context.addArgument(CommandContext::pathArgumentName(), L"/tmp/a b.step");
    context.addArgument(key("AssetSession"), &object);
    context.addArgument(key("Nothing"), static_cast<Vs::SerializableObject*>(nullptr));

    int flag = 0;
    EXPECT_TRUE(context.argument(key("Hidden"), static_cast<EArgType>(1), &flag));
    EXPECT_EQ(flag, 1);
    std::wstring path;
    EXPECT_TRUE(context.argument(key("Path"), static_cast<EArgType>(3), &path));
    EXPECT_EQ(path, L"/tmp/a b.step");
    EXPECT_EQ(Vs::cast<Named>(context.argument(key("AssetSession"))), &object);
    EXPECT_EQ(context.argument(key("Path")), nullptr) << "a text is no object";
    EXPECT_EQ(context.argumentAsString(key("AssetSession")), L"asset 1");
    EXPECT_EQ(context.argumentAsString(key("Absent")), L"");
    EXPECT_FALSE(context.hasArgument(key("Nothing")));

    ASSERT_EQ(context.arguments(), 4u);
    EXPECT_EQ(context.argumentName(1), key("Factor"));
    EXPECT_EQ(context.argumentType(1), EArgType::Double);

    context.addArgument(key("Factor"), L"three");
    EXPECT_EQ(context.arguments(), 4u) << "a second argument of a key takes the place of the first";
    context.removeArgument(key("Factor"));
    EXPECT_FALSE(context.hasArgument(key("Factor")));
}

TEST(Context, ConvertsArgumentsOnlyWhereNothingIsLost)
{
    CommandContext context;
    context.addArgument(key("Integer"), -7);
    context.addArgument(key("Whole"), 1920.0);
    context.addArgument(key("Real"), 0.1);
    context.addArgument(key("Huge"), 1e12);
    context.addArgument(key("Digits"), L"007");
    context.addArgument(key("Text"), L"7 mm");

    int integer = 99;
    double real = 99;
    std::wstring text = L"kept";
    EXPECT_TRUE(context.argument(key("Integer"), EArgType::Double, &real) && real == -7.0);
    EXPECT_TRUE(context.argument(key("Whole"), EArgType::Int, &integer) && integer == 1920);
    EXPECT_TRUE(context.argument(key("Digits"), EArgType::Int, &integer) && integer == 7);
    EXPECT_TRUE(context.argument(key("Real"), EArgType::String, &text) && text == L"0.1");

    integer = 99;
    EXPECT_FALSE(context.argument(key("Real"), EArgType::Int, &integer));
    EXPECT_FALSE(context.argument(key("Huge"), EArgType::Int, &integer));
    EXPECT_FALSE(context.argument(key("Text"), EArgType::Int, &integer));
    EXPECT_FALSE(context.argument(key("Absent"), EArgType::Int, &integer));
    EXPECT_EQ(integer, 99) << "a variable that can't be filled stays as it was";
    EXPECT_EQ(context.argumentAsString(key("Digits")), L"007");
}

TEST(Context, CopiesAreIndependentThoughTheyShare)
{
    CommandContext original;
    original.addArgument(key("Factor"), 1.0);
    original.executeImmediately(false);
    CommandContext copy = original;
    copy.addArgument(key("Factor"), 2.0);
    copy.addArgument(key("More"), 1);
    copy.accessPoint(6);
    EXPECT_EQ(original.argumentAsString(key("Factor")), L"1");
    EXPECT_EQ(copy.argumentAsString(key("Factor")), L"2");
    EXPECT_FALSE(original.hasArgument(key("More")));
    EXPECT_FALSE(copy.executeImmediately());
    EXPECT_EQ(copy.commandAccessPoint(), ECommandAccessPoint::Canvas);
    EXPECT_EQ(original.commandAccessPoint(), ECommandAccessPoint::Unknown);
    EXPECT_EQ(CommandContext::emptyContext().arguments(), 0u);
}

TEST(Context, KeepsAnObjectThatCountsItsReferences)
{
    bool gone = false;
    auto* object = new Counted(&gone);
    {
        CommandContext copy;
        {
            CommandContext context;
            context.addArgument(key("Object"), static_cast<Vs::SerializableObject*>(object));
            copy = context;
        }
        EXPECT_FALSE(gone);
        EXPECT_EQ(copy.argument(key("Object")), static_cast<Vs::SerializableObject*>(object));
    }
    EXPECT_TRUE(gone);
}

TEST(Context, OfWhatIsActiveComesFromTheHost)
{
    EXPECT_EQ(CommandContext::activeContext().assetSession(), nullptr);
    CommandTest::Host host;
    CommandMgr manager(CommandTest::Host::session(3));
    host.active = manager.assetSession();
    host.managers[host.active] = &manager;
    const CommandContext context = CommandContext::activeContext();
    EXPECT_EQ(context.assetSession(), host.active);
    EXPECT_EQ(context.commandManager(), &manager);
    EXPECT_EQ(context.shell(), nullptr);
    EXPECT_EQ(CommandMgr::getActiveCommandManager(), &manager);
    EXPECT_EQ(CommandContext().commandManager(), nullptr);
}
