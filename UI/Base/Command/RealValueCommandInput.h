#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Types/Units/UnitDisplaySettings.h"
#include "UI/Base/Command/CommandInput.h"

namespace Vu {

/// A number with a unit. The value is held in the base unit of its quantity (Vs::Units::Unit): lengths in
/// millimetres, angles in radians. As text it may be an expression (Vs::Units::evaluate).
class RealValueCommandInput : public Vs::Implements<RealValueCommandInput, CommandInput<double>>,
                              private Vs::OptionEventSite
{
public:
    /// `unit` is the one in which a person sees the value; the default is for plain numbers. Where it is the
    /// user's unit for all lengths, areas or volumes, the input follows a change of that setting.
    static RealValueCommandInput* make(CommandInputSet* set, int number, Info* info,
                                       const Vs::Units::Unit& unit = {});

    ~RealValueCommandInput() override;

    const Vs::Units::Unit& inputUnits() const { return m_unit; }
    /// The user's settings at the making of the input, unless it is given others.
    const Vs::Units::UnitDisplaySettings& unitDisplaySettings() const { return m_settings; }
    void unitDisplaySettings(const Vs::Units::UnitDisplaySettings& settings);

    /// The lower and the upper limit; `inclusive` says whether the limit itself is valid. Without them every
    /// finite value is.
    void minimumValue(bool on, double value, bool inclusive) { m_minimum = {on, value, inclusive}; }
    void maximumValue(bool on, double value, bool inclusive) { m_maximum = {on, value, inclusive}; }

    /// For an input whose zero means that no value was given yet: what to tell then, as what is missing.
    void awaitsValue(const std::wstring& why) { m_whyAwaits = why; }
    bool isAwaiting() const override { return isMissing() && !refused(); }

    /// What a measurement has to give to fill the input: 2 a length, 4 an angle, 0 nothing does. By default
    /// as its quantity.
    int measureFilter() const { return m_measureFilter; }
    void measureFilter(int filter) { m_measureFilter = filter; }

    /// Whether the field has a list of recent values and of commands that can fill it. Default true.
    bool hasMRU() const { return m_hasMRU; }
    void hasMRU(bool value);

    /// The commands that the list offers, asked for at each call.
    std::vector<Info*> mruCommands();
    /// The user's choice of such a command.
    void triggerMruCommand(const std::wstring& key);

    /// Whether the value may also be dragged by a handle in the canvas. Default true.
    bool useManipulator() const { return m_useManipulator; }
    void setUseManipulator(bool value) { m_useManipulator = value; }

    std::wstring valueAsString() const override;
    bool valueFromString(const std::wstring& text) override;
    std::wstring displayText() const override;

private:
    struct Limit
    {
        bool on = false;
        double value = 0;
        bool inclusive = true;
    };

    using Implements::Implements;
    void optionChanged(Vs::OptionEvent* event) override;
    std::wstring onWhyInvalid() const override;
    std::wstring whyRefused(const std::wstring& text) const override;
    bool isMissing() const { return !m_whyAwaits.empty() && value() == 0; }

    Vs::Units::Unit m_unit;
    Vs::Units::UnitDisplaySettings m_settings;
    Limit m_minimum, m_maximum;
    std::wstring m_whyAwaits;
    int m_measureFilter = 0;
    bool m_hasMRU = true;
    bool m_useManipulator = true;
};

} // namespace Vu
