#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

namespace VyrEngine {

/**
 * The picture the course engine makes for a course that has no downloaded
 * cover: a diagonal gradient in a colour derived from the course id, an open
 * book drawn in white and, under it, the first letter of the course's name.
 * A course without a name gets the book alone.
 */
class CourseCover
{
public:
    /** Side of the generated picture, in pixels. */
    static constexpr int Size = 96;

    static QPixmap generate(quint64 courseId, const QString& courseName);
    /** The upper-left colour of the gradient of @p courseId. */
    static QColor baseColor(quint64 courseId);
};

} // namespace VyrEngine
