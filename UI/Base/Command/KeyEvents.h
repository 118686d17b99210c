#pragma once

#include "Server/Base/Event.h"

namespace Vu {

/// Codes of keys that are not characters. The code of a letter or digit is its ASCII code, in upper case.
enum KeyCode : int { kEscapeKey = 0x01000000 };

/// A key pressed or released while nothing that the user types into had the focus.
class KeyEvent : public Vs::Implements<KeyEvent, Vs::Event>
{
public:
    explicit KeyEvent(int keyCode, unsigned modifiers = 0) : m_keyCode(keyCode), m_modifiers(modifiers) {}

    int keyCode() const { return m_keyCode; }
    /// ModifierMask values, added up.
    unsigned modifierMask() const { return m_modifiers; }

private:
    int m_keyCode;
    unsigned m_modifiers;
};

} // namespace Vu
