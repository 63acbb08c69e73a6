#include "base/Bytes.h"

#include <gtest/gtest.h>

#include "support/MessageOf.h"

namespace tavocal::test {

TEST(BytesTest, ByteOrderIsLittleEndian) {
    const Bytes bytes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 254, 255, 255, 255, 0};
    ByteWriter writer;
    writer.u8(0x01).u16(0x0302).u32(0x07060504).u64(0x0F0E0D0C0B0A0908).i32(-2).zeros(1);
    EXPECT_EQ(writer.take(), bytes);
    EXPECT_EQ(writer.append(Bytes{7, 8}).take(), (Bytes{7, 8}));

    const ByteReader reader(bytes);
    writer.u8(reader.u8(0)).u16(reader.u16(1)).u32(reader.u32(3)).u64(reader.u64(7));
    EXPECT_EQ(writer.i32(reader.i32(15)).zeros(1).take(), bytes);
    EXPECT_EQ(reader.i16(15), -2);
    Bytes written(8, 9);
    writeU16(written, 1, 0xF102);
    writeU32(written, 4, 0xF4030201);
    EXPECT_EQ(written, (Bytes{9, 0x02, 0xF1, 9, 0x01, 0x02, 0x03, 0xF4}));
}

TEST(BytesTest, NothingIsReadOutsideOfTheBytes) {
    // Of exactly this size, so that a sanitizer sees the first byte too many.
    const Bytes bytes(7, 0xCC);
    const ByteReader reader(bytes);
    EXPECT_TRUE(reader.has(0, 7) && reader.has(7, 0) && reader.slice(7, 0).empty());
    EXPECT_FALSE(reader.has(0, 8) || reader.has(8, 0));
    EXPECT_FALSE(reader.has(1, SIZE_MAX) || reader.has(SIZE_MAX, 1));
    EXPECT_EQ(messageOf<std::out_of_range>([&] { reader.u32(4); }), "4 bytes at 4 of 7");
}

}  // namespace tavocal::test
