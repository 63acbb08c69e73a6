#include "firmware/PnrBuffer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/TextTable.h"

namespace tavocal::test {
namespace {

constexpr LUID kSensor = {0x0073, 0x0102, 0, 0, 2};
constexpr std::uint64_t kTime = 0xFEDCBA9876543210;

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

// The size that the message tells and the lengths of its records; how many values each has.
TEST(PnrBufferTest, LengthsAndDamage) {
    for (const auto& [given, expected] : tableOfTest("firmware")) {
        std::istringstream numbers(given);
        std::uint32_t size = 0, length = 0;
        numbers >> size;
        ByteWriter message;
        for (message.u32(15).u32(size); numbers.ignore() >> length;) {
            ByteWriter record;
            record.u8(static_cast<std::uint8_t>(length)).append(luidBytes(kSensor)).u64(kTime);
            Bytes bytes = record.i32(-7).i32(9).take();
            bytes.resize(std::max(length, 1U));
            message.append(bytes);
        }
        EXPECT_EQ(walk(message.take()), expected) << given;
    }
}

TEST(PnrBufferTest, MessageCutAtEveryLength) {
    ByteWriter writer;
    writer.u32(15).u32(42);
    for (int i = 0; i < 2; ++i) {
        writer.u8(21).append(luidBytes(kSensor)).u64(kTime).i32(-7);
    }
    const Bytes whole = writer.take();
    for (std::ptrdiff_t size = 0; size <= 50; ++size) {
        const std::string records = size < 29 ? "" : size < 50 ? "1 " : "1 1 ";
        EXPECT_EQ(walk({whole.begin(), whole.begin() + size}),
                  size < 50 ? records + "damaged" : records)
            << size;
    }
}

}  // namespace
}  // namespace tavocal::test
