#include "metadata/mpegheader.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{

using metadata::MPEGHeader;

MPEGHeader Decoded(std::uint8_t second, std::uint8_t third, std::uint8_t fourth)
{
    MPEGHeader header;
    metadata::DecodeHeader({0, second, third, fourth}, header);
    return header;
}

// A header of 128 kbit/s at 44100 Hz in a file of that size.
MPEGHeader Lengths(std::int32_t size, std::int32_t position, std::string_view bitrate = "128kbit")
{
    MPEGHeader header = Decoded(0xFB, 0x90, 0);
    header.Bitrate = bitrate;
    header.FileSize = size;
    header.HeaderPosition = position;
    metadata::ComputeLengths(true, header);
    return header;
}

TEST(FindHeaderPosition, Table)
{
    const std::string gap4999(4999, 'x');
    const struct {
        const char *name;
        std::string head;
        int want;
    } cases[] = {
        {"empty", "", 0},
        {"at the start, no CRC", "\xFF\xFB", 1},
        {"at the start, CRC", "\xFF\xFA", 1},
        {"lone first byte", "\xFF", 0},
        {"behind a false start", "\xFF\xFF\xFB", 2},
        {"other second bytes", "\xFF\xF3\xFF\xF2\xFF\xE3\xFF\xFC\xFF\xFD", 0},
        {"last pair within reach", gap4999 + "\xFF\xFB", 5000},
        {"one position too far", gap4999 + "x\xFF\xFB", 0},
        {"first of two", "x\xFF\xFA\xFF\xFB", 2},
    };
    for (const auto &c : cases)
        EXPECT_EQ(metadata::FindHeaderPosition(c.head), c.want) << c.name;
}

TEST(DecodeHeader, EveryValueOfVersionLayerModeEmphasis)
{
    const char *versions[] = {"MPEG-2.5", "reserved", "MPEG-2", "MPEG-1"};
    const char *layers[] = {"Not defined", "Layer 3", "Layer 2", "Layer 1"};
    const char *modes[] = {"Stereo", "Joint Stereo", "Dual channel", "Mono"};
    const char *emphases[] = {"None", "50/15ms", "reserved", "CCITT j.17"};
    for (int bits = 0; bits < 4; ++bits) {
        const MPEGHeader header = Decoded(static_cast<std::uint8_t>(0xE0 | bits << 3 | bits << 1),
                                          0, static_cast<std::uint8_t>(bits << 6 | bits));
        EXPECT_EQ(header.Version, versions[bits]);
        EXPECT_EQ(header.Layer, layers[bits]);
        EXPECT_EQ(header.ChannelMode, modes[bits]);
        EXPECT_EQ(header.Emphasis, emphases[bits]);
    }
}

TEST(DecodeHeader, SingleBits)
{
    EXPECT_TRUE(Decoded(0xFA, 0, 0).CRC);
    EXPECT_FALSE(Decoded(0xFB, 0, 0).CRC);
    EXPECT_TRUE(Decoded(0xFB, 0x02, 0).Padding);
    EXPECT_FALSE(Decoded(0xFB, 0xFD, 0).Padding);
    EXPECT_TRUE(Decoded(0xFB, 0, 0x08).Copyright);
    EXPECT_FALSE(Decoded(0xFB, 0, 0xF7).Copyright);
    EXPECT_TRUE(Decoded(0xFB, 0, 0x04).Original);
    EXPECT_FALSE(Decoded(0xFB, 0, 0xFB).Original);
}

TEST(DecodeHeader, Frequencies)
{
    const char *first[] = {"44100 Hz", "48000 Hz", "32000 Hz", "32000 Hz"};
    const char *others[] = {"22050 Hz", "24000 Hz", "16000 Hz", "16000 Hz"};
    for (int index = 0; index < 4; ++index) {
        const auto third = static_cast<std::uint8_t>(index << 2);
        EXPECT_EQ(Decoded(0xFB, third, 0).Frequency, first[index]);
        EXPECT_EQ(Decoded(0xF3, third, 0).Frequency, others[index]);
        EXPECT_EQ(Decoded(0xEB, third, 0).Frequency, others[index]);
        EXPECT_EQ(Decoded(0xE3, third, 0).Frequency, others[index]);
    }
}

// Bitrate indexes 1 to 14, by version bits and layer bits.
TEST(DecodeHeader, Bitrates)
{
    constexpr const char *layer1 = "32 64 96 128 160 192 224 256 288 320 352 384 416 448";
    constexpr const char *layer2 = "32 48 56 64 80 96 112 128 160 192 224 256 320 384";
    constexpr const char *layer3 = "32 40 48 56 64 80 96 112 128 160 192 224 256 320";
    constexpr const char *layer3Low = "8 16 24 32 64 80 56 64 128 160 112 128 256 320";
    const struct {
        int version, layer;
        const char *want;
    } rows[] = {{3, 3, layer1}, {3, 2, layer2},    {3, 1, layer3},    {2, 3, layer1},
                {2, 2, layer2}, {2, 1, layer3Low}, {0, 1, layer3Low}, {1, 1, layer3Low},
                {0, 3, layer1}, {1, 2, layer2}};
    for (const auto &row : rows) {
        std::string got;
        const auto second = static_cast<std::uint8_t>(0xE0 | row.version << 3 | row.layer << 1);
        for (int index = 1; index <= 14; ++index) {
            const std::string rate =
                Decoded(second, static_cast<std::uint8_t>(index << 4), 0).Bitrate;
            ASSERT_TRUE(rate.ends_with("kbit"));
            if (index > 1)
                got += ' ';
            got += rate.substr(0, rate.size() - 4);
        }
        EXPECT_EQ(got, row.want) << row.version << ' ' << row.layer;
        EXPECT_EQ(Decoded(second, 0x00, 0).Bitrate, "Not defined");
        EXPECT_EQ(Decoded(second, 0xF0, 0).Bitrate, "Not defined");
    }
}

TEST(DecodeHeader, NoLayer)
{
    EXPECT_EQ(Decoded(0xF8, 0x90, 0).Bitrate, "kbit");        // MPEG-1: an empty row
    EXPECT_EQ(Decoded(0xF8, 0x00, 0).Bitrate, "Not defined"); // no column
    EXPECT_EQ(Decoded(0xF0, 0x90, 0).Bitrate, "Not defined"); // MPEG-2: no row
}

TEST(BitrateCell, Bounds)
{
    for (const auto &[row, column] : {std::pair{-1, 0}, {13, 0}, {0, -1}, {0, 14}})
        EXPECT_FALSE(metadata::BitrateCell(row, column)) << row << ' ' << column;
    for (int row = 3; row < 10; ++row)
        EXPECT_EQ(metadata::BitrateCell(row, 13), "") << row;
    EXPECT_EQ(metadata::BitrateCell(12, 13), "320");
}

TEST(ComputeLengths, TheKnownExample)
{
    const MPEGHeader header = Lengths(4'000'000, 1000);
    EXPECT_EQ(header.FrameLength, 417);
    EXPECT_EQ(header.Frames, 9589);
    EXPECT_EQ(header.Seconds, 250);
}

TEST(ComputeLengths, PaddingAddsAByte)
{
    MPEGHeader header = Decoded(0xFB, 0x92, 0);
    metadata::ComputeLengths(true, header);
    EXPECT_EQ(header.FrameLength, 418);
}

TEST(ComputeLengths, LayersAndVersions)
{
    MPEGHeader header = Decoded(0xFF, 0x90, 0); // Layer 1, 288 kbit/s: 12, not 4 x 12
    metadata::ComputeLengths(true, header);
    EXPECT_EQ(header.FrameLength, 12 * 288000 / 44100);
    header = Decoded(0xF3, 0x90, 0); // MPEG-2 Layer 3: 144, not 72
    metadata::ComputeLengths(true, header);
    EXPECT_EQ(header.FrameLength, 144 * 128000 / 22050);
}

TEST(ComputeLengths, NoBitrateLeavesFramesAndSeconds)
{
    const MPEGHeader fresh = Lengths(1000, 0, "Not defined");
    EXPECT_EQ(fresh.FrameLength, 0);
    EXPECT_EQ(fresh.Frames, 0);
    EXPECT_EQ(fresh.Seconds, 0);
    MPEGHeader used = fresh;
    used.FrameLength = 5;
    used.Frames = 6;
    used.Seconds = 7;
    metadata::ComputeLengths(true, used);
    EXPECT_EQ(used.FrameLength, 0); // 0 by the frequency is a number
    EXPECT_EQ(used.Frames, 6);
    EXPECT_EQ(used.Seconds, 7);
}

TEST(ComputeLengths, NoFrequencyLeavesTheFrameLength)
{
    MPEGHeader header = Lengths(4'000'000, 1000);
    header.Frequency = "Not defined";
    header.FrameLength = 100;
    metadata::ComputeLengths(true, header);
    EXPECT_EQ(header.FrameLength, 100);
    EXPECT_EQ(header.Frames, 39989);
}

TEST(ComputeLengths, EightTimesTheAudioMustFitIn32Bits)
{
    constexpr int kLimit = INT_MAX / 8; // bytes of audio
    EXPECT_EQ(Lengths(kLimit + 4, 0, "320kbit").Seconds, 6711);
    const MPEGHeader over = Lengths(kLimit + 5, 0, "320kbit");
    EXPECT_EQ(over.Seconds, 0);
    EXPECT_EQ(over.Frames, (kLimit + 1) / over.FrameLength);
}

TEST(ComputeLengths, PlayingTimeIsSixteenBits)
{
    EXPECT_EQ(Lengths(32767 * 1000 + 4, 0, "8kbit").Seconds, 32767);
    EXPECT_EQ(Lengths(32767 * 1000 + 504, 0, "8kbit").Seconds, 0);
}

TEST(ComputeLengths, SecondsRoundHalfToEven)
{
    EXPECT_EQ(Lengths(4 + 2500, 0, "8kbit").Seconds, 2);
    EXPECT_EQ(Lengths(4 + 3500, 0, "8kbit").Seconds, 4);
}

TEST(ComputeLengths, LargestFileWithoutAHeader)
{
    const MPEGHeader header = Lengths(INT_MAX, -1);
    EXPECT_EQ(header.Frames, 0); // size minus position does not fit 32 bits
    EXPECT_EQ(Lengths(INT_MAX, 0).Frames, (INT_MAX - 4) / 417);
}

TEST(ComputeLengths, HeaderAfterTheEndGivesNegativeQuotientsCutTowardsZero)
{
    const MPEGHeader header = Lengths(100, 10'000);
    EXPECT_EQ(header.Frames, -9904 / 417);
    EXPECT_EQ(header.Seconds, -1);
}

TEST(ComputeLengths, UnknownSizeLeavesFramesAndSeconds)
{
    MPEGHeader header = Lengths(4'000'000, 1000);
    const MPEGHeader before = header;
    header.FileSize = 0;
    metadata::ComputeLengths(false, header);
    EXPECT_EQ(header.Frames, before.Frames);
    EXPECT_EQ(header.Seconds, before.Seconds);
}

} // namespace
