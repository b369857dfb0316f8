#include "VyrMenuEx.h"

namespace {
const char* const kMenuStyle =
    "QMenu { background: #FFFFFF; border: 1px solid %1; border-radius: 4px; padding: 4px 0px; }"
    "QMenu::item { padding: 6px 24px; color: #333333; font-size: 13px; background: transparent; }"
    "QMenu::item:selected { background: #F0F7F4; color: #009265; }"
    "QMenu::item:disabled { color: #BBBBBB; }"
    "QMenu::separator { height: 1px; background: #EBEBEB; margin: 4px 0px; }";
}

VyrMenuEx::VyrMenuEx(bool withShadow, QWidget* parent)
    : QMenu(parent)
    , m_withShadow(withShadow)
{
    setStyleSheet(QString::fromLatin1(kMenuStyle).arg(withShadow ? QStringLiteral("#C8C8C8") : QStringLiteral("#E0E0E0")));
}
