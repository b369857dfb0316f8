#pragma once

#include <QDialog>

class ICustomedTitleBar;
class QLabel;
class QPushButton;
class QVBoxLayout;

/**
 * The client's dialog frame: a frameless QDialog with a title bar (the title
 * text and, by type, a close button) above one centre widget. exec() is
 * QDialog's own; see VyrModalAnswerer for answering it without a person.
 *
 * Types: 0 no title bar, 1 a title only, 2 a title and a close button (the
 * close button rejects).
 *
 * Host side: `titleText()`, `centerWidget()`, `closeButton()` (null for types
 * 0 and 1), `isMovable()`.
 */
class VyrCustomNormalDialog : public QDialog
{
    Q_OBJECT
public:
    enum Type
    {
        NoTitleBar = 0,
        TitleOnly = 1,
        TitleWithClose = 2,
    };

    VyrCustomNormalDialog(Type type, QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags(),
                          ICustomedTitleBar* titleBar = nullptr, bool movable = false);

    /** Puts @p widget in the centre, owned by the dialog; @p fitToWidget sizes the dialog to it. */
    void setCenterWidget(QWidget* widget, bool fitToWidget);

    QString titleText() const;
    QWidget* centerWidget() const { return m_centerWidget; }
    QPushButton* closeButton() const { return m_closeButton; }
    bool isMovable() const { return m_movable; }

public slots:
    void setTitleText(const QString& text);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void buildTitleBar(Type type);

    ICustomedTitleBar* m_customTitleBar;
    QVBoxLayout* m_layout = nullptr;
    QLabel* m_titleLabel = nullptr;
    QPushButton* m_closeButton = nullptr;
    QWidget* m_centerWidget = nullptr;
    QPoint m_dragOffset;
    bool m_movable;
};
