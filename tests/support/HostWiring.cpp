#include "HostWiring.h"

#include "NoticeListModel.h"
#include "NoticeListWidget.h"

HostWiring::HostWiring(NoticeListWidget* window, VyrEngine::NoticeCategory category)
    : QObject(window)
    , m_window(window)
    , m_category(category)
{
    NoticeListModel* model = NoticeListModel::instance();
    connect(model, &NoticeListModel::popupNoticeListWidget, this, [this](VyrEngine::NoticeCategory category) {
        if (category != m_category)
            return;
        m_window->adjustListHeight(0);
        if (m_window->isVisible())
            m_window->autoAdjustNoticeListWidgetPos();
        else
            m_window->popNoticeListWidget(0);
    });
    connect(model, &NoticeListModel::removeNoticeListItem, this, [this](VyrEngine::NoticeCategory category) {
        if (category == m_category)
            m_window->adjustListHeight(1);
    });
}
