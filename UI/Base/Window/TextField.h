#pragma once

#include "UI/Base/Command/CommandInputEvents.h"
#include "UI/Base/Window/InputField.h"

#include <QTimer>

class QLineEdit;
class QMenu;
class QToolButton;

namespace Vu {

/// An editable field. What is typed becomes the value a moment after the last key, so that the preview
/// follows, and is final on Enter or when the field is left. A number's field has a list of recent values and
/// of commands that can fill it, which the Down key opens.
class TextField : public InputField
{
public:
    TextField(CommandInputBase* input, QWidget* parent);

    void forget() override;
    void enter() override;

protected:
    void show(const CommandInputBase& input, bool failed) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void type(CommandInputValueChangeEvent::EKind kind);
    void fillList();
    void choose(const std::wstring& text);

    QLineEdit* m_line;
    QToolButton* m_list;
    QMenu* m_menu;
    QTimer m_pause;
    bool m_edited = false; ///< The line holds text not applied yet.
};

} // namespace Vu
