// What ThreadSanitizer has to know of Qt. The packaged Qt is not instrumented and locks by itself, not by pthreads, so
// the sanitizer would take everything that a QMutex guards, or that a thread leaves behind, for a race. Suppressions
// cannot tell such a report from a true one. So the calls that synchronise are caught on their way from our code to Qt
// and told to the sanitizer; whatever is not guarded by one of them is still reported.

#include <QDeadlineTimer>
#include <QMutex>
#include <QThread>
#include <QVariant>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

// What Qt does within itself is not for our tests to judge.
extern "C" const char* __tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}

namespace
{

/// The function of Qt behind the one of the same name in this file.
template <typename Function>
Function* original(const char* symbol)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto lockOfQt = original<void(QMutex*)>("_ZN6QMutex4lockEv");
    lockOfQt(this);
    __tsan_acquire(this);
}

bool QMutex::tryLock(int timeout) QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto tryLockOfQt = original<bool(QMutex*, int)>("_ZN6QMutex7tryLockEi");
    const bool isLocked = tryLockOfQt(this, timeout);
    if (isLocked)
        __tsan_acquire(this);
    return isLocked;
}

void QMutex::unlock() noexcept
{
    static const auto unlockOfQt = original<void(QMutex*)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockOfQt(this);
}

// A thread emits `finished` when its work is done, and counts as running until after that.
void QThread::start(Priority priority)
{
    static const auto startOfQt = original<void(QThread*, Priority)>("_ZN7QThread5startENS_8PriorityE");
    constexpr char isWatched[] = "isWatchedForThreadSanitizer";
    if (!property(isWatched).toBool()) {
        setProperty(isWatched, true);
        connect(this, &QThread::finished, [this] { __tsan_release(this); });
    }
    startOfQt(this, priority);
}

bool QThread::isRunning() const
{
    static const auto isRunningOfQt = original<bool(const QThread*)>("_ZNK7QThread9isRunningEv");
    const bool isRunning = isRunningOfQt(this);
    if (!isRunning)
        __tsan_acquire(const_cast<QThread*>(this));
    return isRunning;
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto waitOfQt = original<bool(QThread*, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool hasEnded = waitOfQt(this, deadline);
    if (hasEnded)
        __tsan_acquire(this);
    return hasEnded;
}
