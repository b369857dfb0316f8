#pragma once

#include <QMenu>

/**
 * The client's context menu: a QMenu with the client's white, rounded look.
 * `withShadow` gives it a soft border instead of the flat one. exec() is
 * QMenu's own, a real nested event loop; see VyrModalAnswerer for choosing an
 * entry without a person.
 *
 * Host side: `withShadow()` tells how it was made.
 */
class VyrMenuEx : public QMenu
{
    Q_OBJECT
public:
    explicit VyrMenuEx(bool withShadow, QWidget* parent = nullptr);

    bool withShadow() const { return m_withShadow; }

private:
    bool m_withShadow;
};
