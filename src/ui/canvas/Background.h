#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <memory>
#include <utility>

namespace tessaloom {

/// Runs `work` beside the tick, then `done` with its result on the windows' thread, unless `owner` has gone
/// by then. `work` touches nothing but what it holds itself.
template <typename Work, typename Done>
void InBackground(QObject* owner, Work work, Done done) {
    QThreadPool::globalInstance()->start(
        [guard = QPointer<QObject>(owner), work = std::move(work), done = std::move(done)]() mutable {
            auto result = std::make_shared<decltype(work())>(work());
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [guard, result, done = std::move(done)]() mutable {
                    if (guard) done(std::move(*result));
                },
                Qt::QueuedConnection);
        });
}

}  // namespace tessaloom
