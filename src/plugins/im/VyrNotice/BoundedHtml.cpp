#include "BoundedHtml_p.h"
#include "NoticeLog_p.h"

#include <QDebug>
#include <QFile>
#include <QImage>
#include <QTextCursor>
#include <QUrl>

namespace {

const QChar kEllipsis(0x2026);
// Pictures whose names are not the program's own are shown from here: it is a
// resource that doesn't exist, so Qt draws its usual picture for a missing one.
const QString kRefusedPicture = QStringLiteral(":/VyrNotice/refused-picture");

// Scanning follows Qt's rich-text reader: a "<" always opens a tag, a name or
// an unquoted value ends at ">", "<", "=", "/>" or a space, a quote opens a
// value only at its start, and a tag ends at the next ">" after its attributes.
// What the reader nests, this counts; where it is unsure it counts more.
bool isSpaceForTags(QChar c)
{
    return c.isSpace() && c != QChar::ParagraphSeparator;
}

struct Attribute
{
    QString name;
    int valueStart = -1;   // where the value starts in the text, its quotes included
    int valueEnd = -1;
    QString value;         // without quotes
};

struct Tag
{
    enum Kind { Open, Close, Other };
    Kind kind = Other;
    QString name;
    QList<Attribute> attributes;
    bool selfClosed = false;
    int end = 0;           // one past the tag's last character
};

class TagReader
{
public:
    TagReader(const QString& text, int pos) : m_text(text), m_pos(pos), m_len(text.size()) {}

    Tag read()
    {
        Tag tag;
        ++m_pos;   // the "<"
        eatSpace();
        if (at('!')) {
            readDeclaration();
        } else if (at('/')) {
            ++m_pos;
            tag.kind = Tag::Close;
            tag.name = readWord(nullptr).toLower().trimmed();
            skipPast('>');
        } else {
            tag.kind = Tag::Open;
            tag.name = readWord(nullptr).toLower();
            if (m_pos < m_len && m_text.at(m_pos).isSpace())
                readAttributes(&tag.attributes);
            while (m_pos < m_len && m_text.at(m_pos) != QLatin1Char('>')) {
                if (m_text.at(m_pos) == QLatin1Char('/'))
                    tag.selfClosed = true;
                ++m_pos;
            }
            ++m_pos;
        }
        tag.end = qMin(m_pos, m_len);
        return tag;
    }

private:
    bool at(char c) const { return m_pos < m_len && m_text.at(m_pos) == QLatin1Char(c); }

    void eatSpace()
    {
        while (m_pos < m_len && isSpaceForTags(m_text.at(m_pos)))
            ++m_pos;
    }

    void skipPast(char c)
    {
        while (m_pos < m_len && m_text.at(m_pos++) != QLatin1Char(c)) {
        }
    }

    void readDeclaration()
    {
        ++m_pos;
        if (QStringView(m_text).mid(m_pos, 2) == QLatin1String("--")) {
            const int end = m_text.indexOf(QLatin1String("-->"), m_pos + 2);
            m_pos = end >= 0 ? end + 3 : m_len;
        } else {
            skipPast('>');
        }
    }

    QString readWord(Attribute* span)
    {
        const int start = m_pos;
        QString word;
        if (at('"') || at('\'')) {
            const QChar quote = m_text.at(m_pos++);
            while (m_pos < m_len) {
                const QChar c = m_text.at(m_pos++);
                if (c == quote)
                    break;
                word += c;
            }
        } else {
            while (m_pos < m_len) {
                const QChar c = m_text.at(m_pos);
                if (c == QLatin1Char('>') || c == QLatin1Char('<') || c == QLatin1Char('=') || c.isSpace()
                    || (c == QLatin1Char('/') && m_pos + 1 < m_len && m_text.at(m_pos + 1) == QLatin1Char('>')))
                    break;
                word += c;
                ++m_pos;
            }
        }
        if (span) {
            span->valueStart = start;
            span->valueEnd = m_pos;
        }
        return word;
    }

    void readAttributes(QList<Attribute>* attributes)
    {
        while (m_pos < m_len) {
            eatSpace();
            if (at('>') || at('/'))
                break;
            Attribute attribute;
            attribute.name = readWord(nullptr).toLower();
            if (attribute.name.isEmpty())
                break;
            eatSpace();
            if (at('=')) {
                ++m_pos;
                eatSpace();
                attribute.value = readWord(&attribute);
            }
            attributes->append(attribute);
        }
    }

    const QString& m_text;
    int m_pos;
    const int m_len;
};

bool isOwnName(const QString& name)
{
    return name.startsWith(QLatin1String(":/")) || name.startsWith(QLatin1String("qrc:"), Qt::CaseInsensitive);
}

// ":/x" for an own name in either form.
QString ownPath(const QString& name)
{
    if (name.startsWith(QLatin1String(":/")))
        return name;
    return QLatin1Char(':') + QUrl(name).path();
}

// The largest value that an attribute may carry, 0 for one left alone.
double attributeLimit(const QString& name, bool isPercentage)
{
    if (name == QLatin1String("colspan") || name == QLatin1String("rowspan"))
        return BoundedHtml::MaxSpan;
    if (name == QLatin1String("width") || name == QLatin1String("height"))
        return isPercentage ? 100 : BoundedHtml::MaxExtent;
    if (name == QLatin1String("cellpadding") || name == QLatin1String("cellspacing")
        || name == QLatin1String("border"))
        return BoundedHtml::MaxExtent;
    return 0;
}

// Style text that names no address: Qt's style parser hands every url() to the
// file system's path checks, and a backslash could spell one in escapes.
QString inertCss(const QString& css)
{
    QString inert = css;
    inert.replace(QLatin1Char('\\'), QLatin1Char(' '));
    inert.replace(QLatin1String("url("), QLatin1String("url-refused("), Qt::CaseInsensitive);
    return inert;
}

// `value` as an attribute value, in quotes that it doesn't hold.
QString quoted(QString value)
{
    if (!value.contains(QLatin1Char('"')))
        return QLatin1Char('"') + value + QLatin1Char('"');
    value.remove(QLatin1Char('\''));
    return QLatin1Char('\'') + value + QLatin1Char('\'');
}

// The new value of an attribute, or a null string to keep it.
QString boundedValue(const QString& tagName, const Attribute& attribute)
{
    if (attribute.name == QLatin1String("style")) {
        const QString inert = inertCss(attribute.value);
        return inert == attribute.value ? QString() : inert;
    }
    if (tagName == QLatin1String("img") && attribute.name == QLatin1String("src")) {
        if (!isOwnName(attribute.value))
            return kRefusedPicture;
        // Qt reads a "qrc:" name it can't find as a local file; the ":/" form stays inside.
        return attribute.value.startsWith(QLatin1String(":/")) ? QString() : ownPath(attribute.value);
    }
    QString number = attribute.value.trimmed();
    const bool isPercentage = number.endsWith(QLatin1Char('%'));
    if (isPercentage)
        number.chop(1);
    const double limit = attributeLimit(attribute.name, isPercentage);
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (limit <= 0 || !ok || (value <= limit && value >= -limit))
        return QString();
    return QString::number(int(limit)) + (isPercentage ? QStringLiteral("%") : QString());
}

class Bounder
{
public:
    explicit Bounder(const QString& html) : m_html(html) {}

    QString run()
    {
        int pos = 0;
        while (pos < m_html.size() && m_reason.isEmpty())
            pos = m_html.at(pos) == QLatin1Char('<') ? takeTag(pos) : takeText(pos);
        if (!m_reason.isEmpty()) {
            m_out += kEllipsis;
            qCInfo(lcVyrNotice) << "rich text cut, reason:" << m_reason << "length:" << m_html.size() << "kept:" << m_out.size() - 1;
        } else if (m_clamped) {
            qCInfo(lcVyrNotice) << "rich text attributes replaced, length:" << m_html.size();
        }
        return m_out;
    }

private:
    int takeText(int pos)
    {
        int next = m_html.indexOf(QLatin1Char('<'), pos);
        if (next < 0)
            next = m_html.size();
        const int room = BoundedHtml::MaxLength - m_out.size();
        // A run longer than the room is cut anyway: copy no more of it than that.
        const int taken = qMin(next - pos, qMax(room, 0) + 1);
        QString run = m_html.mid(pos, taken);
        // Inside a style element the text is a style sheet.
        if (m_open.contains(QStringLiteral("style"))) {
            const QString inert = inertCss(run);
            m_clamped = m_clamped || inert != run;
            run = inert;
        }
        if (taken == next - pos && run.size() <= room) {
            m_out += run;
            return next;
        }
        int cut = qMax(room, 0);
        // Never half a character or half an entity.
        if (cut > 0 && run.at(cut - 1).isHighSurrogate())
            --cut;
        const int amp = run.lastIndexOf(QLatin1Char('&'), cut - 1);
        const int semicolon = amp >= 0 ? run.indexOf(QLatin1Char(';'), amp) : -1;
        if (amp >= 0 && amp > cut - 10 && (semicolon < 0 || semicolon >= cut))
            cut = amp;
        m_out += run.left(cut);
        m_reason = QStringLiteral("length");
        return next;
    }

    int takeTag(int pos)
    {
        const Tag tag = TagReader(m_html, pos).read();
        QString markup = m_html.mid(pos, tag.end - pos);
        if (tag.kind == Tag::Open)
            markup = boundedAttributes(tag, pos, markup);
        if (m_out.size() + markup.size() > BoundedHtml::MaxLength) {
            m_reason = QStringLiteral("length");
            return tag.end;
        }
        if (tag.kind == Tag::Open && !opens(tag))
            return tag.end;
        if (tag.kind == Tag::Close)
            closes(tag.name);
        m_out += markup;
        return tag.end;
    }

    QString boundedAttributes(const Tag& tag, int tagStart, const QString& markup)
    {
        QString result = markup;
        // From the last, so that earlier positions stay right.
        for (int i = tag.attributes.size() - 1; i >= 0; --i) {
            const Attribute& attribute = tag.attributes.at(i);
            if (attribute.valueStart < 0)
                continue;
            const QString value = boundedValue(tag.name, attribute);
            if (value.isNull())
                continue;
            m_clamped = true;
            result.replace(attribute.valueStart - tagStart, attribute.valueEnd - attribute.valueStart, quoted(value));
        }
        return result;
    }

    // Counts an open tag; false (and the reason set) when it would break a bound.
    bool opens(const Tag& tag)
    {
        static const QStringList kChildless = {QStringLiteral("img"), QStringLiteral("br"), QStringLiteral("hr"),
                                               QStringLiteral("meta")};
        if (kChildless.contains(tag.name))
            return true;
        QStringList added;
        // A paragraph or list item ends the one open right before it.
        if ((tag.name == QLatin1String("p") || tag.name == QLatin1String("li")) && !m_open.isEmpty()
            && m_open.last() == tag.name)
            m_open.removeLast();
        const bool isCell = tag.name == QLatin1String("td") || tag.name == QLatin1String("th");
        // A cell or row outside any table gets one made around it.
        if ((isCell && !m_open.contains(QStringLiteral("tr")))
            || (tag.name == QLatin1String("tr") && !m_open.contains(QStringLiteral("table"))))
            added << QStringLiteral("table");
        if (isCell && !m_open.contains(QStringLiteral("tr")))
            added << QStringLiteral("tr");
        added << tag.name;

        const int tablesAdded = added.count(QStringLiteral("table"));
        // A closed tag stays open only in the table and row made around it.
        if (tag.selfClosed)
            added.removeLast();
        if (m_open.size() + added.size() > BoundedHtml::MaxDepth)
            m_reason = QStringLiteral("nesting");
        else if (tablesAdded && m_open.count(QStringLiteral("table")) + tablesAdded > BoundedHtml::MaxTableDepth)
            m_reason = QStringLiteral("table nesting");
        else if (m_tables + tablesAdded > BoundedHtml::MaxTables)
            m_reason = QStringLiteral("tables");
        else if (isCell && m_cells + 1 > BoundedHtml::MaxCells)
            m_reason = QStringLiteral("cells");
        if (!m_reason.isEmpty())
            return false;
        m_open << added;
        m_tables += tablesAdded;
        m_cells += isCell ? 1 : 0;
        return true;
    }

    void closes(const QString& name)
    {
        const int index = m_open.lastIndexOf(name);
        // A close tag with nothing open to close is ignored, as Qt does.
        if (index >= 0)
            m_open.erase(m_open.begin() + index, m_open.end());
    }

    const QString& m_html;
    QString m_out;
    QString m_reason;
    QStringList m_open;
    int m_tables = 0;
    int m_cells = 0;
    bool m_clamped = false;
};

} // namespace

QString BoundedHtml::bounded(const QString& html)
{
    return Bounder(html).run();
}

QVariant BoundedHtml::ownResource(int type, const QUrl& name)
{
    const QString text = name.toString();
    if (isOwnName(text) || (name.scheme().isEmpty() && name.path().startsWith(QLatin1String(":/")))) {
        QFile file(name.scheme().isEmpty() ? name.path() : ownPath(text));
        if (file.size() <= MaxResourceSize && file.open(QIODevice::ReadOnly))
            return file.readAll();
        // Missing: Qt then tries the picture's name itself, which bounded() made a ":/" one.
        return QVariant();
    }
    qCInfo(lcVyrNotice) << "rich text resource refused, scheme:" << name.scheme() << "type:" << type;
    // Never empty for a picture: on an empty answer Qt reads the name as a local file.
    return type == QTextDocument::ImageResource ? QVariant(refusedPicture()) : QVariant();
}

QImage BoundedHtml::refusedPicture()
{
    static const QImage picture = [] {
        QImage image(1, 1, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        return image;
    }();
    return picture;
}

BoundedHtml::Document::Document(QObject* parent)
    : QTextDocument(parent)
{
}

void BoundedHtml::Document::insertBoundedHtml(QTextCursor& cursor, const QString& html)
{
    cursor.insertHtml(bounded(html));
}

QVariant BoundedHtml::Document::loadResource(int type, const QUrl& name)
{
    return ownResource(type, name);
}

BoundedHtml::Browser::Browser(QWidget* parent)
    : QTextBrowser(parent)
{
    // Set before anything styles the browser, so that its settings reach this document.
    setDocument(new Document(this));
    // Links lead nowhere: no page is loaded into the card, no program opened.
    setOpenLinks(false);
    setOpenExternalLinks(false);
}

void BoundedHtml::Browser::setBoundedText(const QString& text)
{
    setText(bounded(text));
}

QVariant BoundedHtml::Browser::loadResource(int type, const QUrl& name)
{
    return ownResource(type, name);
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
void BoundedHtml::Browser::setSource(const QUrl& name)
{
    qCInfo(lcVyrNotice) << "rich text link not followed, scheme:" << name.scheme();
}
#else
void BoundedHtml::Browser::doSetSource(const QUrl& name, QTextDocument::ResourceType type)
{
    Q_UNUSED(type)
    qCInfo(lcVyrNotice) << "rich text link not followed, scheme:" << name.scheme();
}
#endif
