#include "zenlay/render/image_cache.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/system.h"
#include "tests/support/fake_host.h"
#include "zenlay/render/targets.h"

namespace zenlay::test {
namespace {

constexpr int slotBytes = 256 * 1024;  // the least, in force for small images
int allocationsLeft;

class ImageCache : public ::testing::Test {
 protected:
  void SetUp() override {
    resetFakeHost(64, 48);
    reserveRenderMemory = platform::reserveMemory;
  }
  void TearDown() override {
    freeImageCache();
    reserveRenderMemory = platform::reserveMemory;
  }
  static uint8_t* create(const std::string& name, int width = 250, int height = 250, int bits = 32) {
    return static_cast<uint8_t*>(createImage(width, height, bits, name.c_str()));
  }
  static bool has(const char* name) { return findImage(name).data; }
};

TEST_F(ImageCache, FindsByNameInAnyCase) {
  initialiseImageCache(2);
  uint8_t* data = create("C:/Clips/One.PNG", 3, 2, 24);
  CachedImage found = findImage("c:/clips/one.png");
  EXPECT_EQ(found.data, data);
  EXPECT_EQ(found.width, 3);
  EXPECT_EQ(found.height, 2);
  EXPECT_EQ(found.bits, 24);
  EXPECT_FALSE(has("c:/clips/two.png"));
  EXPECT_FALSE(has(""));
}

TEST_F(ImageCache, PacksBehindTheMainImage) {
  initialiseImageCache(2);
  // 100 * 100 * 4 = 40000 bytes: the main image takes 40016, the others 40000 each; six fit into 262144.
  uint8_t* first = create("0", 100, 100);
  EXPECT_EQ(create("1", 100, 100), first + 40016);
  EXPECT_EQ(create("2", 100, 100), first + 80016);
  for (int i = 3; i < 6; i++) create(std::to_string(i), 100, 100);
  uint8_t* seventh = create("6", 100, 100);
  EXPECT_TRUE(seventh < first || seventh >= first + slotBytes);
  for (int i = 0; i < 7; i++) EXPECT_TRUE(has(std::to_string(i).c_str())) << i;
  // Rows are padded to 4 bytes: 5 pixels of 24 bits are 16 bytes a row.
  uint8_t* odd = create("odd", 5, 3, 24);
  EXPECT_EQ(create("next", 1, 1, 32), odd + 48);
}

TEST_F(ImageCache, TakesThirtyTwoPackedImages) {
  initialiseImageCache(1);
  uint8_t* first = create("first", 1, 1);
  for (int i = 0; i < maxPackedImages; i++) EXPECT_NE(create(std::string("p").append(std::to_string(i)), 1, 1), first);
  EXPECT_TRUE(has("first"));
  EXPECT_EQ(create("over", 1, 1), first);
  EXPECT_FALSE(has("first"));
  EXPECT_FALSE(has("p31"));
  EXPECT_TRUE(has("over"));
}

TEST_F(ImageCache, EvictsTheLeastRecentlyUsed) {
  initialiseImageCache(3);
  uint8_t *a = create("a"), *b = create("b");
  create("c");
  EXPECT_TRUE(has("a"));
  EXPECT_EQ(create("d"), b);
  EXPECT_TRUE(has("a") && has("c") && has("d"));
  EXPECT_FALSE(has("b"));
  EXPECT_EQ(create("e"), a);  // used before c and d
  EXPECT_TRUE(has("c"));
}

TEST_F(ImageCache, TemporariesGoFirst) {
  initialiseImageCache(2);
  uint8_t* a = create("a");
  uint8_t* temporary = create("CACHE_TEMP");
  EXPECT_NE(temporary, a);
  EXPECT_FALSE(has("CACHE_TEMP"));
  EXPECT_EQ(create("b"), temporary);
  EXPECT_TRUE(has("a"));
  // Free room behind a packed slot is lent without being taken.
  initialiseImageCache(1);
  uint8_t* main = create("main", 10, 10);
  EXPECT_EQ(create("CACHE_TEMP", 10, 10), main + 416);
  EXPECT_EQ(create("kept", 10, 10), main + 416);
}

TEST_F(ImageCache, WithoutSlotsOrRoomThereIsOneTemporary) {
  initialiseImageCache(0);
  uint8_t* data = create("a", 10, 10);
  ASSERT_NE(data, nullptr);
  EXPECT_FALSE(has("a"));
  EXPECT_EQ(create("b", 10, 10), data);
  initialiseImageCache(100);  // 32 at most
  EXPECT_EQ(imageCacheSlots(), maxCacheSlots);
  uint8_t* large = create("large", 300, 300);
  ASSERT_NE(large, nullptr);
  large[300 * 300 * 4 - 1] = 1;
  EXPECT_FALSE(has("large"));
  EXPECT_EQ(create("larger", 256, 256), large);  // 262144 + 16 do not fit a slot
  EXPECT_TRUE(create("fits", 256, 255) && has("fits"));
}

TEST_F(ImageCache, LivesWithTheMemoryItGets) {
  reserveRenderMemory = [](size_t bytes) { return allocationsLeft-- > 0 ? platform::reserveMemory(bytes) : nullptr; };
  allocationsLeft = 2;
  initialiseImageCache(4);
  create("a"), create("b"), create("c");
  EXPECT_EQ(imageCacheSlots(), 2);
  EXPECT_FALSE(has("a"));
  EXPECT_TRUE(has("b") && has("c"));
  allocationsLeft = 0;
  initialiseImageCache(4);
  EXPECT_EQ(create("a"), nullptr);
  EXPECT_EQ(createImage(0, 5, 32, "empty"), nullptr);
  EXPECT_EQ(createImage(2000000000, 2000000000, 64, "absurd"), nullptr);
}

TEST_F(ImageCache, NamesEffectImages) {
  initialiseImageCache(4);
  bool found = true;
  void* image = effectImage(0x10003, 8, 4, 64, 2, &found);
  EXPECT_FALSE(found);
  EXPECT_EQ(findImage("*cache00010003[2]_8x4@64").data, image);
  EXPECT_EQ(effectImage(0x10003, 8, 4, 64, 2, &found), image);
  EXPECT_TRUE(found);
  EXPECT_NE(effectImage(0x10003, 8, 4, 64, 3, &found), image);
  EXPECT_FALSE(found);
  image = effectImage(clipCacheKey, 64, 48, 64, 0, &found);
  EXPECT_EQ(findImage("*cacheffffff9c[0]_64x48@64").data, image);
}

}  // namespace
}  // namespace zenlay::test
