#pragma once

#include <QThread>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

/// Does the same work on up to four cores at the same time, the calling thread being on one of them; returns when all
/// have done it. It is for the work to share out what there is to do.
template <typename Work>
void doTogether(const Work& work)
{
    constexpr int mostThreads = 4; // each may hold a large picture
    std::vector<std::unique_ptr<QThread>> others;
    for (int count = 1; count < std::min(QThread::idealThreadCount(), mostThreads); ++count) {
        others.emplace_back(QThread::create(std::cref(work)));
        others.back()->start();
    }
    work();
    for (const std::unique_ptr<QThread>& other : others)
        other->wait();
}
