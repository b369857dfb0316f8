#pragma once

// Private to the library: the one way engine futures are observed.

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>

// Runs `completion` with the future's first result on the GUI thread, within
// `context`'s lifetime: not at all if the future is cancelled, finishes
// without a result, or `context` is destroyed first. The watcher is a child
// of `context` and deletes itself after the completion.
template <typename T, typename Completion>
void observeFuture(QObject* context, const QFuture<T>& future, Completion completion)
{
    auto* watcher = new QFutureWatcher<T>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, completion]() {
        watcher->deleteLater();
        if (watcher->isCanceled() || watcher->future().resultCount() < 1)
            return;
        completion(watcher->result());
    });
    watcher->setFuture(future);
}
