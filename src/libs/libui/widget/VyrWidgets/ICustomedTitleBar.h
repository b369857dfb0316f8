#pragma once

#include <QString>

class QWidget;

/** A title bar a dialog can be given instead of its own: the widget to place on top and where the title text goes. */
class ICustomedTitleBar
{
public:
    virtual ~ICustomedTitleBar() = default;
    virtual QWidget* titleBarWidget() = 0;
    virtual void setTitleText(const QString& text) = 0;
};
