#pragma once

#include <QApplication>
#include <QFont>
#include <QString>

// A change of the surface a row is painted on, as the row-picture tests make
// it: "width" (the caller narrows the row's rectangle), "font" (another font
// for the painter), "appfont" (another application font, set here; the caller
// sets the first one back) and "ratio" (a device pixel ratio of 2).
struct PaintSurface
{
    qreal ratio = 1;
    QFont font;

    static PaintSurface changedTo(const QString& surface)
    {
        PaintSurface changed;
        if (surface == QLatin1String("font")) {
            changed.font.setFamily(QStringLiteral("Serif"));
            changed.font.setStyleStrategy(QFont::NoAntialias);
        } else if (surface == QLatin1String("appfont")) {
            QFont appFont = QApplication::font();
            appFont.setStyleStrategy(QFont::NoAntialias);
            QApplication::setFont(appFont);
            changed.font = appFont;
        } else if (surface == QLatin1String("ratio")) {
            changed.ratio = 2;
        }
        return changed;
    }
};
