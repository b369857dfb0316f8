#pragma once

#include <QTreeView>

/**
 * The client's tree view: no frame, a transparent viewport and the slim
 * vertical scroll bar of every list of the client. Otherwise a plain QTreeView.
 *
 * Host side: none; it is a widget like any other.
 */
class VyrTreeView : public QTreeView
{
    Q_OBJECT
public:
    explicit VyrTreeView(QWidget* parent = nullptr);
};
