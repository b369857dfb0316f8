#pragma once

// Private to the library: markup that the host passes on from other people and
// that is shown as rich text on purpose. It is bounded before anything lays it
// out, and the documents that show it load nothing from outside the library.

#include "VyrNoticeExport.h"

#include <QTextBrowser>
#include <QTextDocument>

class QImage;
class QTextCursor;
class QUrl;

// bounded() cuts a text at the first place where it would break a bound: its
// length, how deep its elements nest, how deep its tables nest, how many
// tables and cells it holds. The cut text ends in "…" and one info line says
// why. Sizes in attributes that cost layout time (spans of cells, widths,
// heights, paddings, borders) are brought down to sane values. Ordinary text
// is returned as it came.
//
// Document and Browser give a document the library's own ":/" resources and
// nothing else: no local file, no device, no data address, no network. A
// picture named by anything else is renamed by bounded() to a resource that
// doesn't exist, so Qt shows its usual picture for a missing one.
class VYRNOTICE_TESTS_EXPORT BoundedHtml
{
public:
    // Characters of markup; far more than the rows and cards can show.
    static constexpr int MaxLength = 1024;
    // Open elements at one place.
    static constexpr int MaxDepth = 16;
    // Tables inside tables (a table inside a cell of another is 2).
    static constexpr int MaxTableDepth = 2;
    static constexpr int MaxTables = 4;
    static constexpr int MaxCells = 32;
    // Largest colspan or rowspan.
    static constexpr int MaxSpan = 8;
    // Largest width, height, padding, spacing or border, in pixels.
    static constexpr int MaxExtent = 1000;
    // Largest own resource read, in bytes.
    static constexpr qint64 MaxResourceSize = 1 << 20;

    // `html` within the bounds.
    static QString bounded(const QString& html);
    // The contents of `name` if it is one of the program's ":/" resources.
    // Anything else is refused with a line in the log: a null value, or for a
    // picture refusedPicture(), since on a null one Qt would read the name itself.
    static QVariant ownResource(int type, const QUrl& name);
    // One transparent pixel: a refused background shows nothing, as an unloadable one does.
    static QImage refusedPicture();

    // A document that loads only ownResource(). Its text comes in through
    // insertBoundedHtml(), bounded on the way.
    class Document : public QTextDocument
    {
    public:
        explicit Document(QObject* parent = nullptr);

        // As QTextCursor::insertHtml() on `cursor`, a cursor on this document.
        void insertBoundedHtml(QTextCursor& cursor, const QString& html);

    protected:
        QVariant loadResource(int type, const QUrl& name) override;
    };

    // A read-only browser over a Document: it follows no link and opens
    // nothing; anchorClicked() is all a click gives.
    class Browser : public QTextBrowser
    {
    public:
        explicit Browser(QWidget* parent = nullptr);

        // `text` bounded, then shown as QTextEdit::setText() shows it.
        void setBoundedText(const QString& text);

        QVariant loadResource(int type, const QUrl& name) override;

        // Nothing is ever loaded as the browser's page.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        void setSource(const QUrl& name) override;
#else
    protected:
        void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;
#endif
    };
};
