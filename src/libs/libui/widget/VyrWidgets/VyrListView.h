#pragma once

#include <QListView>

/**
 * The client's list view: no frame, a transparent viewport and a slim
 * vertical scroll bar that only shows its handle, as in every list of the
 * client. Otherwise a plain QListView.
 *
 * Host side: none; it is a widget like any other.
 */
class VyrListView : public QListView
{
    Q_OBJECT
public:
    explicit VyrListView(QWidget* parent = nullptr);
};
