#include "LXBlendOn.h"
#include "LXImage.h"
#include "support/Pictures.h"
#include "support/TestPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <thread>
#include <vector>

namespace {

void OnThreads(unsigned int threads, void (*work)(unsigned int, LXImageRGBA32i),
               const LXImageRGBA32i& image) {
    std::vector<std::thread> running;
    for (unsigned int i = 0; i < threads; ++i)
        running.emplace_back(work, i, image);
    for (std::thread& thread : running)
        thread.join();
}

} // namespace

// Copies, reads and writes of images that share tiles, each thread on images of its own. The last
// holder of a tile may write in place at the moment the other lets go of it.
TEST(Threads, CopiesOfOneImageAreIndependent) {
    const LXImageRGBA32i original = RandomImage(300, 300, 8);
    const auto work = [](unsigned int id, LXImageRGBA32i image) {
        const LXImageRGBA32i start(image);
        for (int at = 0; at < 300; ++at) {
            LXImageRGBA32i copy(start);
            const LXRGBA32i mine{static_cast<unsigned char>(id), 1, 2, 3};
            copy.SetColor(at, at, mine);
            EXPECT_EQ(copy.GetColor(at, at), mine);
            EXPECT_EQ(copy.GetColor(299 - at, 7), start.GetColor(299 - at, 7));
            image = copy;
        }
    };
    OnThreads(2, work, original);
    EXPECT_TRUE(SamePixels(original, RandomImage(300, 300, 8)));
}

TEST(Threads, BlendsShareTheirSource) {
    const auto work = [](unsigned int, LXImageRGBA32i image) {
        const LXImageRGBA32i source(image);
        const QRect rect(0, 0, 200, 200);
        for (int round = 0; round < 10; ++round) {
            BlendOn(source, rect, 13, image, rect.translated(round, 3), 0.5, false);
            BlendMaskOn(source, rect, 0, image, rect, 0.5, source, rect, true, true);
        }
    };
    OnThreads(2, work, RandomImage(200, 200, 4));
}

TEST(Threads, TheLastHolderWritesInPlace) {
    for (int round = 0; round < 2000; ++round) {
        LXImageRGBA32i first(64, 64);
        first.SetColor(0, 0, {1, 1, 1, 1});
        std::atomic<bool> go{false};
        std::thread other([copy = LXImageRGBA32i(first), &go]() mutable {
            while (!go) {
            }
            EXPECT_EQ(copy.GetColor(0, 0), (LXRGBA32i{1, 1, 1, 1}));
            copy = LXImageRGBA32i(0, 0);
        });
        go = true;
        first.SetColor(0, 0, {2, 2, 2, 2});
        other.join();
        ASSERT_EQ(first.GetColor(0, 0), (LXRGBA32i{2, 2, 2, 2}));
    }
}

TEST(Threads, ThePoolServesAllAndLosesNothing) {
    TestPool pool(20);
    std::atomic<int> calls{0};
    pool.Manager().SetExceptionHandler(
        [](void* counter, const std::exception&) { ++*static_cast<std::atomic<int>*>(counter); },
        &calls);
    const auto work = [](unsigned int, LXImageRGBA32i) {
        for (int round = 0; round < 500; ++round)
            try {
                LXImageRGBA32i image(600, 200);
                for (int x = 0; x < 600; x += 128)
                    image.SetColor(x, 0, {9, 9, 9, 9});
            } catch (const std::bad_alloc&) {
            }
    };
    OnThreads(4, work, LXImageRGBA32i(0, 0));
    EXPECT_EQ(pool.InUse(), 0u);
    EXPECT_EQ(pool.Manager().GetAvailableCount(), 20u);
}
