#pragma once

#include "Server/Base/Strings.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Tests/Server/DataModel/Fixture.h"

/// Measures objects of `asset` by their texts.
class MeasuresTest : public DataModelTest
{
protected:
    Vs::StrongRef<Vs::LogicalSelection> object(const std::wstring& text)
    {
        Vs::Status own;
        const auto path = Vs::findPath(*asset, text, own);
        EXPECT_TRUE(path) << Vs::Strings::narrow(own.toString());
        return Vs::StrongRef<Vs::LogicalSelection>(
            new Vs::LogicalSelection(asset, path.value_or(Vs::ObjectPath{}), nullptr));
    }

    /// When false, `why` holds the reason.
    bool measure(const std::vector<std::wstring>& texts, Vs::EMeasureType type, Vs::MeasureResult& result)
    {
        Vs::Status own;
        const Vs::MeasureMgr& manager = *Vs::MeasureMgr::get();
        const bool found =
            texts.size() == 1 ? manager.measure(object(texts[0]), type, result, &own)
            : texts.size() == 2
                ? manager.measure(object(texts[0]), object(texts[1]), type, result, &own)
                : manager.measure(object(texts[0]), object(texts[1]), object(texts[2]), type, result, &own);
        why = Vs::Strings::narrow(own.toString());
        EXPECT_EQ(found, why.empty()) << why;
        return found;
    }

    double value(const std::vector<std::wstring>& texts, Vs::EMeasureType type)
    {
        Vs::MeasureResult result;
        EXPECT_TRUE(measure(texts, type, result)) << Vs::Strings::narrow(texts[0]) << ": " << why;
        return result.value;
    }

    GkPoint3d position(const std::wstring& text)
    {
        return {value({text}, Vs::EMeasureType::PositionX), value({text}, Vs::EMeasureType::PositionY),
                value({text}, Vs::EMeasureType::PositionZ)};
    }

    static void expectNear(double value, double expected, double tolerance = 1e-6)
    {
        EXPECT_NEAR(value / expected, 1, tolerance) << value << " instead of " << expected;
    }

    Vs::Asset* asset = nullptr;
    std::string why;
};
