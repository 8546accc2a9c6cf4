#include <VelmarCoreUI/Platform/Foundation/VLXCache.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

using IntCache = VLXCache<std::string, int>;

TEST(VLXCache, CountLimitEvictsLeastRecentlyUsed) {
    auto cache = IntCache::create();
    cache->setCountLimit(3);
    cache->setObject(1, "a");
    cache->setObject(2, "b");
    cache->setObject(3, "c");
    EXPECT_EQ(cache->objectForKey("a"), 1);  // a is now the most recent
    cache->setObject(4, "d");
    EXPECT_EQ(cache->count(), 3u);
    EXPECT_FALSE(cache->objectForKey("b"));
    EXPECT_EQ(cache->objectForKey("c"), 3);
    EXPECT_EQ(cache->objectForKey("d"), 4);

    // Replacing keeps one entry and counts as a use.
    cache->setObject(10, "a");
    cache->setObject(5, "e");
    EXPECT_EQ(cache->count(), 3u);
    EXPECT_EQ(cache->objectForKey("a"), 10);
    EXPECT_FALSE(cache->objectForKey("c"));

    // Lowering the limit evicts at once, oldest first.
    cache->setCountLimit(1);
    EXPECT_EQ(cache->count(), 1u);
    EXPECT_EQ(cache->objectForKey("a"), 10);

    cache->removeObjectForKey("a");
    cache->removeObjectForKey("missing");
    EXPECT_EQ(cache->count(), 0u);
}

TEST(VLXCache, CostLimit) {
    auto cache = IntCache::create();
    cache->setTotalCostLimit(10);
    cache->setObject(1, "a", 4);
    cache->setObject(2, "b", 4);
    cache->setObject(2, "b", 4);  // a replaced entry's cost is counted once
    EXPECT_EQ(cache->count(), 2u);
    cache->setObject(3, "c", 4);
    EXPECT_FALSE(cache->objectForKey("a"));
    EXPECT_EQ(cache->count(), 2u);
    // Too expensive on its own: not kept, and nothing else is evicted for it.
    cache->setObject(4, "huge", 11);
    EXPECT_FALSE(cache->objectForKey("huge"));
    EXPECT_EQ(cache->count(), 2u);
    // Removal gives the cost back.
    cache->removeObjectForKey("b");
    cache->setObject(5, "d", 6);
    EXPECT_EQ(cache->objectForKey("c"), 3);
    EXPECT_EQ(cache->objectForKey("d"), 5);
    cache->removeAllObjects();
    EXPECT_EQ(cache->count(), 0u);
    cache->setObject(6, "e", 10);
    EXPECT_EQ(cache->objectForKey("e"), 6);
}

// Run under the sanitizers, this also checks that readers and writers never race.
TEST(VLXCache, ConcurrentUse) {
    auto cache = IntCache::create();
    cache->setCountLimit(16);
    std::atomic<int> mismatches{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 2000; ++i) {
                const int key = (i * 7 + t) % 40;
                const std::string name = std::to_string(key);
                if (i % 3 == 0) {
                    cache->setObject(key * 100, name, 1);
                } else if (i % 11 == 0) {
                    cache->removeObjectForKey(name);
                } else if (auto value = cache->objectForKey(name); value && *value != key * 100) {
                    ++mismatches;
                }
                if (cache->count() > 16) {
                    ++mismatches;
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(mismatches.load(), 0);
    EXPECT_LE(cache->count(), 16u);
}
