#include "base/Bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavocal {
namespace {

TEST(BytesTest, ByteOrderIsLittleEndian) {
    const Bytes bytes = ByteWriter()
                            .u8(0x01)
                            .u16(0x0302)
                            .u32(0x07060504)
                            .u64(0x0F0E0D0C0B0A0908)
                            .i32(-2)
                            .zeros(1)
                            .take();
    EXPECT_EQ(bytes, (Bytes{1,  2,  3,  4,  5,  6,    7,    8,    9,    10,
                            11, 12, 13, 14, 15, 0xFE, 0xFF, 0xFF, 0xFF, 0}));
    const ByteReader reader(bytes);
    EXPECT_EQ(reader.u8(0), 0x01);
    EXPECT_EQ(reader.u16(1), 0x0302);
    EXPECT_EQ(reader.u32(3), 0x07060504U);
    EXPECT_EQ(reader.u64(7), 0x0F0E0D0C0B0A0908U);
    EXPECT_EQ(reader.i32(15), -2);
}

TEST(BytesTest, NothingIsReadOutsideOfTheBytes) {
    for (std::size_t size = 0; size <= 8; ++size) {
        // Of exactly this size, so that a sanitizer sees the first byte too many.
        const Bytes bytes(size, 0xCC);
        const ByteReader reader(bytes);
        EXPECT_EQ(reader.has(0, 8), size == 8);
        if (size < 8) {
            EXPECT_THROW(reader.u64(0), std::out_of_range);
        }
        EXPECT_THROW(reader.u8(size), std::out_of_range);
        EXPECT_NO_THROW(reader.slice(size, 0));
        EXPECT_THROW(reader.slice(size + 1, 0), std::out_of_range);
        EXPECT_FALSE(reader.has(1, std::numeric_limits<std::size_t>::max()));
        EXPECT_FALSE(reader.has(std::numeric_limits<std::size_t>::max(), 1));
    }
}

}  // namespace
}  // namespace tavocal
