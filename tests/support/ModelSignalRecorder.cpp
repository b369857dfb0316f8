#include "ModelSignalRecorder.h"

#include "NoticeListModel.h"

namespace {
QString categoryName(VyrEngine::NoticeCategory category)
{
    switch (category) {
    case VyrEngine::Activity: return QStringLiteral("Activity");
    case VyrEngine::Lesson: return QStringLiteral("Lesson");
    }
    return QString::number(int(category));
}
} // namespace

ModelSignalRecorder::ModelSignalRecorder(NoticeListModel* model)
{
    connect(model, &QAbstractItemModel::modelReset, this, [this]() { record(QStringLiteral("reset")); });
    connect(model, &NoticeListModel::popupNoticeListWidget, this, [this](VyrEngine::NoticeCategory c) {
        record(QStringLiteral("popup(%1)").arg(categoryName(c)));
    });
    connect(model, &NoticeListModel::removeNoticeListItem, this, [this](VyrEngine::NoticeCategory c) {
        record(QStringLiteral("remove(%1)").arg(categoryName(c)));
    });
    connect(model, &NoticeListModel::lessonNoticeUpdated, this, [this]() { record(QStringLiteral("updated")); });
}
