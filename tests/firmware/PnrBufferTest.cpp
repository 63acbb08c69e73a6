#include "firmware/PnrBuffer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/TextTable.h"

namespace tavocal::test {
constexpr LUID kSensor = {0x0073, 0x0102, 0, 0, 2};
constexpr std::uint64_t kTime = 0xFEDCBA9876543210;

// How many values each record has, with "damaged" behind them.
static std::string walk(const Bytes& message) {
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

// The size that the message tells, the lengths of its records, and how long it is if it is cut; how
// many values each has.
TEST(PnrBufferTest, LengthsAndDamage) {
    for (const auto& [given, expected] : tableOfTest()) {
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
        const std::size_t cut = given.find(" of ");
        const Bytes whole = message.take();
        const std::size_t kept =
            cut == std::string::npos ? whole.size() : std::stoul(given.substr(cut + 4));
        EXPECT_EQ(walk({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(kept)}),
                  expected)
            << given;
    }
}

}  // namespace tavocal::test
