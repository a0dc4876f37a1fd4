// Reading on a second thread while the calculation works: what is read arrives whole
// and in order, and a failure on either side reaches the caller and stops the other.

#include "register/read_ahead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

namespace brenlow::reg {
namespace {

using Put = std::function<void(std::string&&)>;

// Reads `n` texts "0", "1"..., failing at `fail_at` when it is given; counts what it read.
std::function<void(const Put&)> reader(int n, std::atomic<int>& read, int fail_at = -1) {
    return [n, &read, fail_at](const Put& put) {
        for (int i = 0; i < n; ++i) {
            if (i == fail_at) throw std::runtime_error("the register table is gone");
            ++read;
            put(std::to_string(i));
        }
    };
}

TEST(ReadAhead, EverythingReadArrivesOnceInTheOrderRead) {
    for (const int n : {0, 1, 7, 8, 9, 1000, 5003}) {
        std::atomic<int> read = 0;
        std::vector<std::string> used;
        read_ahead<std::string>(
            reader(n, read), [&](std::string&& s) { used.push_back(std::move(s)); }, 8, 2);
        ASSERT_EQ(used.size(), static_cast<std::size_t>(n)) << n;
        for (int i = 0; i < n; ++i) ASSERT_EQ(used[i], std::to_string(i)) << n;
    }
}

TEST(ReadAhead, AFailedReadReachesTheCallerAfterWhatWasReadBeforeIt) {
    std::atomic<int> read = 0;
    std::vector<std::string> used;
    try {
        read_ahead<std::string>(
            reader(100, read, 50), [&](std::string&& s) { used.push_back(std::move(s)); }, 8, 2);
        FAIL() << "the failure was lost";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "the register table is gone");
    }
    EXPECT_EQ(used.size(), 48u);  // six whole batches; the half-filled one is never handed over
}

TEST(ReadAhead, AFailedCalculationStopsTheReaderAndIsTheOneThrown) {
    std::atomic<int> read = 0;
    int used = 0;
    EXPECT_THROW(read_ahead<std::string>(
                     reader(1000000, read, 999999),
                     [&](std::string&&) {
                         if (++used == 10) throw std::logic_error("the entry cannot be worked out");
                     },
                     8, 2),
                 std::logic_error);
    // The reader holds back two batches ahead, so it stops long before the end.
    EXPECT_LT(read.load(), 1000);
}

}  // namespace
}  // namespace brenlow::reg
