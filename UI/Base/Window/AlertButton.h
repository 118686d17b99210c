#pragma once

#include <QToolButton>

namespace Vu {

struct Alert;

/// Shows in the status bar how many messages there are, and the messages when it is pressed.
class AlertButton : public QToolButton
{
public:
    explicit AlertButton(QWidget* parent);

    void add(const Alert& alert);
    void clear();

private:
    void draw();

    QStringList m_texts;
    bool m_hasError = false;
};

} // namespace Vu
