#pragma once
// Reading on a second thread while the calculation works through what was read. The
// reader hands over batches in the order it read them and holds back once a few are
// waiting, so what is held stays a few batches whatever the register's size. A failure
// on either side stops both and reaches the caller, the calculation's first.
//
// Only the reader touches the database while it runs: the caller's `use` must not.

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace brenlow::reg {

template <class T>
void read_ahead(const std::function<void(const std::function<void(T&&)>& put)>& read,
                const std::function<void(T&&)>& use, std::size_t batch = 1024, std::size_t batches_held = 8) {
    struct Stopped {};
    std::mutex mu;
    std::condition_variable changed;
    std::deque<std::vector<T>> ready;
    bool done = false, stop = false;
    std::exception_ptr read_failed;

    std::thread reader([&] {
        std::vector<T> filling;
        filling.reserve(batch);
        const auto hand_over = [&] {
            std::unique_lock lock(mu);
            changed.wait(lock, [&] { return ready.size() < batches_held || stop; });
            if (stop) throw Stopped{};
            ready.push_back(std::move(filling));
            changed.notify_all();
            filling = {};
            filling.reserve(batch);
        };
        try {
            read([&](T&& item) {
                filling.push_back(std::move(item));
                if (filling.size() == batch) hand_over();
            });
            if (!filling.empty()) hand_over();
        } catch (const Stopped&) {
        } catch (...) {
            std::lock_guard lock(mu);
            read_failed = std::current_exception();
        }
        std::lock_guard lock(mu);
        done = true;
        changed.notify_all();
    });

    std::exception_ptr use_failed;
    try {
        for (;;) {
            std::vector<T> taken;
            {
                std::unique_lock lock(mu);
                changed.wait(lock, [&] { return !ready.empty() || done; });
                if (ready.empty()) break;
                taken = std::move(ready.front());
                ready.pop_front();
                changed.notify_all();
            }
            for (T& item : taken) use(std::move(item));
        }
    } catch (...) {
        use_failed = std::current_exception();
        std::lock_guard lock(mu);
        stop = true;
        changed.notify_all();
    }
    reader.join();
    if (use_failed) std::rethrow_exception(use_failed);
    if (read_failed) std::rethrow_exception(read_failed);
}

}  // namespace brenlow::reg
