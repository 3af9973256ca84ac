#include "journal/DiskFlusher.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>

namespace sorbel::DiskFlusher {

namespace {

using Files = std::set<std::shared_ptr<const FileDescriptor>>;

class Flusher {
  public:
    ~Flusher() {
        {
            const std::lock_guard lock(mMutex);
            mEnds = true;
        }
        mWake.notify_one();
        if (mThread.joinable()) mThread.join();
        Flush(std::move(mDue));
    }

    void Add(const std::shared_ptr<const FileDescriptor>& file) {
        const std::lock_guard lock(mMutex);
        if (!mDue.insert(file).second || mDue.size() > 1) return;
        if (!mThread.joinable()) mThread = std::thread([this] { Run(); });
        mWake.notify_one();
    }

    Files Take() {
        const std::lock_guard lock(mMutex);
        return std::exchange(mDue, {});
    }

    /// A disk that fails cannot be helped here: the bytes stay with the system.
    static void Flush(Files files) {
        for (const auto& file : files)
            (void)Uninterrupted([&] { return fdatasync(file->Number()); });
    }

  private:
    void Run() {
        constexpr std::chrono::milliseconds Delay(500);
        std::unique_lock lock(mMutex);
        for (;;) {
            mWake.wait(lock, [this] { return mEnds || !mDue.empty(); });
            if (mWake.wait_for(lock, Delay, [this] { return mEnds; })) return;
            Files due = std::exchange(mDue, {});
            lock.unlock();
            Flush(std::move(due));
            lock.lock();
        }
    }

    std::mutex mMutex;
    std::condition_variable mWake;
    Files mDue;
    bool mEnds = false;
    std::thread mThread;
};

Flusher& TheFlusher() {
    static Flusher flusher;
    return flusher;
}

}  // namespace

void FlushSoon(const std::shared_ptr<const FileDescriptor>& file) {
    TheFlusher().Add(file);
}

void FlushAll() {
    Flusher::Flush(TheFlusher().Take());
}

}  // namespace sorbel::DiskFlusher
