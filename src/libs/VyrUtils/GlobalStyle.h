#pragma once

#include <QFont>
#include <QHash>
#include <QIcon>
#include <QString>

class QPushButton;
class QWidget;

/**
 * The client's theme: named widget styles and font sizes.
 *
 * A named style is a style sheet for one kind of widget (the name begins with
 * the widget's class, as in "QToolButton_CloseGrayBg"), optionally with a
 * painted icon. Applying it sets the sheet on the widget and records the name
 * in the widget's property "GlobalStyle". An unknown name leaves the widget's
 * looks alone but is still recorded.
 *
 * Host side:
 *   styleNames()                    every style the theme knows
 *   styleSheet(name)                the sheet of a named style, empty if unknown
 *   registerStyle(name, sheet)      add or replace a named style
 */
class GlobalStyle
{
public:
    static GlobalStyle* getInstance();

    /**
     * Gives @p widget the named style; with @p repolish the widget's QStyle is
     * run over it again at once, otherwise it takes effect at the next polish.
     */
    void applyCurrentStyle(QWidget* widget, const QString& styleName, bool repolish);
    /** A copy of the application font with this pixel size and weight (a QFont::Weight value). */
    void applyCurrentFontSize(QWidget* widget, int pixelSize, int weight = QFont::Normal);
    /**
     * Widens @p button so that its text fits in its font with 12 pixels on
     * each side; a button wide enough already keeps its size, and the height
     * is never touched. A fixed width stays fixed, at the new width.
     */
    void applyPushButtonAutoCalcSize(QPushButton* button);

    // Host side.
    QStringList styleNames() const;
    QString styleSheet(const QString& styleName) const;
    void registerStyle(const QString& styleName, const QString& sheet);

private:
    GlobalStyle();
    void applyIcon(QWidget* widget, const QString& styleName);
    const QIcon& cachedIcon(const QString& styleName, const QColor& color, int size);

    static GlobalStyle* m_pInstance;
    QHash<QString, QString> m_sheets;
    /**
     * Painted once per style and shared: Qt's pixmap cache keeps every icon
     * pixmap it draws, keyed by the pixmap, so a fresh icon per widget would
     * add an entry for each widget ever styled.
     */
    QHash<QString, QIcon> m_icons;
};
