#include "firmware/PnrBuffer.h"

#include <gtest/gtest.h>

#include <random>

namespace tavocal {
namespace {

constexpr LUID kSensor = {0x0073, 0x0102, 0, 0, 2};

Bytes record(std::size_t length, std::uint64_t timestamp = 1000) {
    Bytes bytes = ByteWriter()
                      .u8(static_cast<std::uint8_t>(length))
                      .append(luidBytes(kSensor))
                      .u64(timestamp)
                      .i32(-7)
                      .i32(100000)
                      .take();
    bytes.resize(length);
    return bytes;
}

Bytes buffer(std::uint32_t size, std::initializer_list<Bytes> records) {
    ByteWriter writer;
    writer.u32(15).u32(size);
    for (const Bytes& bytes : records) {
        writer.append(bytes);
    }
    return writer.take();
}

struct Walk {
    std::vector<std::size_t> valueCounts;
    bool damaged;
    bool operator==(const Walk&) const = default;
};

Walk walk(const Bytes& message) {
    Walk result{{}, false};
    PnrBuffer records(message);
    while (const auto next = records.next()) {
        result.valueCounts.push_back(next->valueCount());
    }
    EXPECT_FALSE(records.next());
    result.damaged = records.isDamaged();
    return result;
}

TEST(PnrBufferTest, FieldsOfARecord) {
    const Bytes message = buffer(25, {record(25, 0xFFFFFFFFFFFFFFFF)});
    const auto first = PnrBuffer(message).next();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->luid, kSensor);
    EXPECT_EQ(first->timestamp, 0xFFFFFFFFFFFFFFFFU);
    ASSERT_EQ(first->valueCount(), 2U);
    EXPECT_EQ(first->value(0), -7);
    EXPECT_EQ(first->value(1), 100000);
}

TEST(PnrBufferTest, LengthsAndDamage) {
    const struct {
        const char* name;
        Bytes message;
        Walk expected;
    } cases[] = {
        {"empty", buffer(0, {}), {{}, false}},
        {"no values", buffer(17, {record(17)}), {{0}, false}},
        {"uneven slots",
         buffer(20 + 23 + 21, {record(20), record(23), record(21)}),
         {{0, 1, 1}, false}},
        {"longest", buffer(255, {record(255)}), {{59}, false}},
        {"bytes behind size", buffer(21, {record(21), record(21)}), {{1}, false}},
        {"zero length", buffer(43, {record(21), Bytes(1, 0), record(21)}), {{1}, true}},
        {"too short", buffer(37, {record(21), record(16)}), {{1}, true}},
        {"runs past size", buffer(41, {record(21), record(21)}), {{1}, true}},
        {"size past message", buffer(43, {record(21), record(21)}), {{1, 1}, true}},
        {"huge size", buffer(0xFFFFFFFF, {record(21)}), {{1}, true}},
    };
    for (const auto& item : cases) {
        EXPECT_EQ(walk(item.message), item.expected) << item.name;
    }
}

TEST(PnrBufferTest, MessageCutAtEveryLength) {
    const Bytes whole = buffer(42, {record(21), record(21)});
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const Walk result = walk(cut);
        EXPECT_EQ(result.valueCounts.size(), size < 8 ? 0 : (size - 8) / 21) << size;
        EXPECT_EQ(result.damaged, size < whole.size()) << size;
    }
}

TEST(PnrBufferTest, RandomBytesEndTheWalk) {
    constexpr unsigned kSeed = 20240607;
    std::mt19937 random(kSeed);
    for (int round = 0; round < 2000; ++round) {
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
}  // namespace tavocal
