#include "AvatarManager.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>

AvatarManager* AvatarManager::m_pInstance = nullptr;

namespace {

// Up to two letters: the first of each of the first two words, or the
// first character of a name written without spaces (as Chinese names are).
QString initialsOf(const QString& name)
{
    const QStringList words = name.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return QString();
    if (words.size() == 1)
        return words.first().left(1).toUpper();
    return (words.at(0).left(1) + words.at(1).left(1)).toUpper();
}

void drawInitials(QPainter& painter, const QRectF& area, const QString& initials)
{
    QFont font;
    font.setPixelSize(int(area.height() * (initials.size() > 1 ? 0.36 : 0.44)));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(area, Qt::AlignCenter, initials);
}

// Two heads and shoulders, the second behind the first.
void drawGroupGlyph(QPainter& painter, const QRectF& area, const QColor& background)
{
    const qreal unit = area.width() / 12.0;
    auto person = [&](qreal cx, qreal cy, qreal scale, const QColor& fill) {
        painter.setBrush(fill);
        painter.setPen(QPen(background, unit * 0.5));
        QPainterPath body;
        body.addEllipse(QPointF(cx, cy + 3.6 * unit * scale), 3.0 * unit * scale, 2.4 * unit * scale);
        painter.drawPath(body);
        painter.drawEllipse(QPointF(cx, cy), 1.6 * unit * scale, 1.6 * unit * scale);
    };
    const QPointF c = area.center();
    person(c.x() + 1.8 * unit, c.y() - 1.6 * unit, 0.85, QColor(255, 255, 255, 170));
    person(c.x() - 1.2 * unit, c.y() - 1.0 * unit, 1.0, Qt::white);
}

// One head and shoulders, white, low in the square.
void drawPersonGlyph(QPainter& painter, const QRectF& area)
{
    const qreal unit = area.width() / 12.0;
    const QPointF c = area.center();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(c.x(), c.y() - 1.4 * unit), 2.2 * unit, 2.2 * unit);
    painter.drawEllipse(QPointF(c.x(), c.y() + 4.4 * unit), 4.0 * unit, 3.2 * unit);
}

enum class Glyph { Group, Person };

// A generated square: the background, then the initials of `name`, or the
// glyph when the name gives none.
QPixmap paintGeneratedSquare(const QColor& background, const QString& name, Glyph glyph)
{
    const int side = AvatarManager::GeneratedSize;
    QPixmap pixmap(side, side);
    pixmap.fill(background);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QRectF area(0, 0, side, side);
    const QString initials = initialsOf(name);
    if (!initials.isEmpty())
        drawInitials(painter, area, initials);
    else if (glyph == Glyph::Person)
        drawPersonGlyph(painter, area);
    else
        drawGroupGlyph(painter, area, background);
    painter.end();
    return pixmap;
}

// The generated square of `id`, made at the first call and kept in `cache`.
QPixmap generatedOnce(QHash<quint64, QPixmap>& cache, quint64 id, const QColor& background, const QString& name,
                      Glyph glyph)
{
    auto cached = cache.constFind(id);
    if (cached != cache.constEnd())
        return *cached;
    return *cache.insert(id, paintGeneratedSquare(background, name, glyph));
}

} // namespace

AvatarManager::AvatarManager(QObject* parent)
    : QObject(parent)
{
}

AvatarManager& AvatarManager::instance()
{
    if (!m_pInstance)
        m_pInstance = new AvatarManager();
    return *m_pInstance;
}

QPixmap AvatarManager::getClusterAvatar(const VyrEngine::ClusterID& clusterId, bool gray)
{
    const quint64 id = clusterId.id();
    const QPixmap picture = m_downloaded.contains(id) ? m_downloaded.value(id) : generatedAvatar(id);
    return gray ? toGray(picture) : picture;
}

QColor AvatarManager::generatedColor(quint64 clusterId)
{
    // Neighbouring ids land far apart on the colour wheel.
    const int hue = int((clusterId * 137u) % 360u);
    return QColor(QColor::fromHsv(hue, 150, 200).rgb());
}

QPixmap AvatarManager::generatedAvatar(quint64 clusterId)
{
    return generatedOnce(m_generated, clusterId, generatedColor(clusterId), m_names.value(clusterId), Glyph::Group);
}

QPixmap AvatarManager::toGray(const QPixmap& pixmap)
{
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int g = qGray(line[x]);
            line[x] = qRgba(g, g, g, qAlpha(line[x]));
        }
    }
    QPixmap out = QPixmap::fromImage(image);
    out.setDevicePixelRatio(pixmap.devicePixelRatio());
    return out;
}

void AvatarManager::putClusterAvatar(quint64 clusterId, const QPixmap& pixmap)
{
    m_downloaded.insert(clusterId, pixmap);
    emit clusterAvatarChanged(VyrEngine::ClusterID(clusterId, VyrEngine::ClusterTypeClass));
}

void AvatarManager::removeClusterAvatar(quint64 clusterId)
{
    m_downloaded.remove(clusterId);
    emit clusterAvatarChanged(VyrEngine::ClusterID(clusterId, VyrEngine::ClusterTypeClass));
}

void AvatarManager::setClusterAvatarName(quint64 clusterId, const QString& name)
{
    m_names.insert(clusterId, name);
    m_generated.remove(clusterId);
    emit clusterAvatarChanged(VyrEngine::ClusterID(clusterId, VyrEngine::ClusterTypeClass));
}

void AvatarManager::clear()
{
    m_downloaded.clear();
    m_names.clear();
    m_generated.clear();
    m_userDownloaded.clear();
    m_userNames.clear();
    m_userGenerated.clear();
    m_userLookups = 0;
}

QPixmap AvatarManager::getUserAvatar(quint64 uid)
{
    ++m_userLookups;
    auto downloaded = m_userDownloaded.constFind(uid);
    return downloaded != m_userDownloaded.constEnd() ? *downloaded : generatedUserAvatar(uid);
}

QColor AvatarManager::generatedUserColor(quint64 uid)
{
    // Another walk round the wheel than the clusters', a little lighter.
    const int hue = int((uid * 97u + 40u) % 360u);
    return QColor(QColor::fromHsv(hue, 120, 215).rgb());
}

QPixmap AvatarManager::generatedUserAvatar(quint64 uid)
{
    return generatedOnce(m_userGenerated, uid, generatedUserColor(uid), m_userNames.value(uid), Glyph::Person);
}

void AvatarManager::putUserAvatar(quint64 uid, const QPixmap& pixmap)
{
    m_userDownloaded.insert(uid, pixmap);
    emit userAvatarChanged(uid);
}

void AvatarManager::removeUserAvatar(quint64 uid)
{
    m_userDownloaded.remove(uid);
    emit userAvatarChanged(uid);
}

void AvatarManager::setUserAvatarName(quint64 uid, const QString& name)
{
    m_userNames.insert(uid, name);
    m_userGenerated.remove(uid);
    emit userAvatarChanged(uid);
}

int AvatarManager::userAvatarLookupCount() const
{
    return m_userLookups;
}
