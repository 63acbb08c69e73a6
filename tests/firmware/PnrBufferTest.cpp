#include "firmware/PnrBuffer.h"

#include <gtest/gtest.h>

#include <random>

namespace tavocal::test {
namespace {

constexpr LUID kSensor = {0x0073, 0x0102, 0, 0, 2};
constexpr std::uint64_t kTime = 0xFEDCBA9876543210;

// A message that tells `size` and holds a record of each length.
Bytes buffer(std::uint32_t size, const std::vector<std::size_t>& lengths) {
    ByteWriter message;
    message.u32(15).u32(size);
    for (const std::size_t length : lengths) {
        const auto told = static_cast<std::uint8_t>(length);
        Bytes record =
            ByteWriter().u8(told).append(luidBytes(kSensor)).u64(kTime).i32(-7).i32(9).take();
        record.resize(std::max<std::size_t>(length, 1));
        message.append(record);
    }
    return message.take();
}

// How many values each record has, with "damaged" behind them.
std::string walk(const Bytes& message) {
    std::string text;
    PnrBuffer records(message);
    while (const auto next = records.next()) {
        text += std::to_string(next->valueCount()) + " ";
        EXPECT_EQ(next->luid, kSensor);
        EXPECT_EQ(next->timestamp, kTime);
        EXPECT_TRUE(next->valueCount() < 1 || next->value(0) == -7);
        EXPECT_TRUE(next->valueCount() < 2 || next->value(1) == 9);
    }
    EXPECT_FALSE(records.next());
    return records.isDamaged() ? text + "damaged" : text;
}

TEST(PnrBufferTest, LengthsAndDamage) {
    EXPECT_EQ(walk(buffer(0, {})), "") << "empty";
    EXPECT_EQ(walk(buffer(17, {17})), "0 ") << "no values";
    EXPECT_EQ(walk(buffer(64, {20, 23, 21})), "0 1 1 ") << "uneven";
    EXPECT_EQ(walk(buffer(255, {255})), "59 ") << "longest";
    EXPECT_EQ(walk(buffer(25, {25, 21})), "2 ") << "bytes behind size";
    EXPECT_EQ(walk(buffer(43, {21, 0, 21})), "1 damaged") << "zero length";
    EXPECT_EQ(walk(buffer(37, {21, 16})), "1 damaged") << "too short";
    EXPECT_EQ(walk(buffer(41, {21, 21})), "1 damaged") << "runs past size";
    EXPECT_EQ(walk(buffer(43, {21, 21})), "1 1 damaged") << "size past message";
    EXPECT_EQ(walk(buffer(0xFFFFFFFF, {21})), "1 damaged") << "huge size";
}

TEST(PnrBufferTest, MessageCutAtEveryLength) {
    const Bytes whole = buffer(42, {21, 21});
    for (std::ptrdiff_t size = 0; size <= 50; ++size) {
        const std::string records = size < 29 ? "" : size < 50 ? "1 " : "1 1 ";
        EXPECT_EQ(walk(Bytes(whole.begin(), whole.begin() + size)),
                  size < 50 ? records + "damaged" : records)
            << size;
    }
}

TEST(PnrBufferTest, RandomBytesEndTheWalk) {
    constexpr unsigned kSeed = 20240607;
    std::mt19937 random(kSeed);
    for (int round = 0; round < 500; ++round) {
        Bytes message(random() % 300);
        for (auto& byte : message) {
            byte = static_cast<std::uint8_t>(random() % 64);
        }
        PnrBuffer records(message);
        std::size_t used = 8;
        while (const auto next = records.next()) {
            used += 17 + next->slots.size();
            ASSERT_LE(used, message.size()) << "seed " << kSeed << " round " << round;
        }
    }
}

}  // namespace
}  // namespace tavocal::test
