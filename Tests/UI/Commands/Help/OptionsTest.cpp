#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Preferences.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

namespace {

using Vu::Preference;

class OptionsTest : public CommandsTests::WithProgram
{
};

/// A value other than the present one.
std::wstring otherValue(const Preference& preference)
{
    if (const auto* choice = std::get_if<Preference::TextChoice>(&preference.kind())) {
        for (const Preference::Choice& each : choice->choices())
            if (each.value != preference.text())
                return each.value;
    } else if (const auto* count = std::get_if<Preference::Count>(&preference.kind())) {
        return std::to_wstring(preference.text() == std::to_wstring(count->least) ? count->most
                                                                                  : count->least);
    }
    return preference.text() == L"true" ? L"false" : L"true";
}

} // namespace

TEST_F(OptionsTest, EachIsListedSetToldAndPutBackByLines)
{
    const std::wstring list = answer(L"Options.List");
    for (const Preference& preference : Vu::Preferences::all()) {
        const std::wstring before = preference.text();
        EXPECT_NE(list.find(preference.id() + L" = " + before + L"  (" + preference.title()),
                  std::wstring::npos);
        const std::wstring other = otherValue(preference);
        answer(L"Options.Set " + preference.id() + L' ' + other);
        EXPECT_EQ(answer(L"Options.Get " + preference.id()), other);
        EXPECT_FALSE(preference.isDefault());
        answer(L"Options.Set " + preference.id());
        EXPECT_EQ(preference.text(), before);
    }
    EXPECT_EQ(answer(L"Options.List decimals"), L"Units.generalPrecision = 3  (Decimals)");
    EXPECT_EQ(answer(L"Options.List \"nothing like it\""), L"");
}

TEST_F(OptionsTest, AWrongNameOrValueChangesNothingAndSaysWhatWouldBeRight)
{
    EXPECT_NE(failure(L"Options.Set UIBase.them dark").find(L"Did you mean UIBase.theme?"),
              std::wstring::npos);
    EXPECT_NE(failure(L"Options.Set UIBase.theme pink").find(L"system, light, dark"), std::wstring::npos);
    EXPECT_NE(failure(L"Options.Set Units.generalPrecision 99").find(L"from 0 to"), std::wstring::npos);
    EXPECT_NE(failure(L"Options.Set Units.generalPrecision 2.5").find(L"from 0 to"), std::wstring::npos);
    EXPECT_NE(failure(L"Options.Set Graphics.MSAA maybe").find(L"true nor false"), std::wstring::npos);
    EXPECT_NE(failure(L"Options.Get").find(L"No option"), std::wstring::npos);
    for (const Preference& preference : Vu::Preferences::all())
        EXPECT_TRUE(preference.isDefault());
    answer(L"Options.Set uibase.THEME Dark");
    EXPECT_EQ(Vu::UIBaseOptionGroup::get()->theme(), L"dark") << "letters' case doesn't matter";
}
