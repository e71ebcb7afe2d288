#include "metadata/mpegheader.h"

#include "runtime/error.h"
#include "runtime/numbers.h"

#include <limits>
#include <string>

namespace metadata
{

namespace
{

constexpr int kRows = 13;
constexpr int kColumns = 14;
using Row = std::array<std::string_view, kColumns>;

constexpr Row kLayer1 = {"32",  "64",  "96",  "128", "160", "192", "224",
                         "256", "288", "320", "352", "384", "416", "448"};
constexpr Row kLayer2 = {"32",  "48",  "56",  "64",  "80",  "96",  "112",
                         "128", "160", "192", "224", "256", "320", "384"};
constexpr Row kLayer3 = {"32",  "40",  "48",  "56",  "64",  "80",  "96",
                         "112", "128", "160", "192", "224", "256", "320"};
constexpr Row kLayer3Low = {"8",  "16",  "24",  "32",  "64",  "80",  "56",
                            "64", "128", "160", "112", "128", "256", "320"};
constexpr Row kNothing = {};

// Indexed by key less 11, where the key is 10 (MPEG-1) or 20, plus the layer's number.
constexpr std::array<Row, kRows> kBitrateTable = {kLayer1,  kLayer2,  kLayer3,   kNothing, kNothing,
                                                  kNothing, kNothing, kNothing,  kNothing, kNothing,
                                                  kLayer1,  kLayer2,  kLayer3Low};

constexpr const char *kVersions[] = {"MPEG-2.5", "reserved", "MPEG-2", "MPEG-1"};
constexpr const char *kLayers[] = {"Not defined", "Layer 3", "Layer 2", "Layer 1"};
constexpr const char *kChannelModes[] = {"Stereo", "Joint Stereo", "Dual channel", "Mono"};
constexpr const char *kEmphases[] = {"None", "50/15ms", "reserved", "CCITT j.17"};
constexpr const char *kMpeg1Frequencies[] = {"44100 Hz", "48000 Hz", "32000 Hz", "32000 Hz"};
constexpr const char *kOtherFrequencies[] = {"22050 Hz", "24000 Hz", "16000 Hz", "16000 Hz"};

constexpr int Bits(std::uint8_t byte, int mask, int shift)
{
    return (byte & mask) >> shift;
}

bool Fits32(std::int64_t value)
{
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max();
}

// The truncated quotient of two 32-bit numbers; nothing when it cannot be computed in 32 bits.
std::optional<std::int32_t> Quotient(std::int64_t dividend, std::int64_t divisor)
{
    if (!Fits32(dividend) || !Fits32(divisor) || divisor == 0 || !Fits32(dividend / divisor))
        return std::nullopt;
    return static_cast<std::int32_t>(dividend / divisor);
}

// The length of the audio for the formulas; nothing when a step does not fit 32 bits.
std::optional<std::int32_t> AudioBytes(const MPEGHeader &header)
{
    const std::int64_t behindHeader = std::int64_t{header.FileSize} - header.HeaderPosition;
    if (!Fits32(behindHeader) || !Fits32(behindHeader - 4))
        return std::nullopt;
    return static_cast<std::int32_t>(behindHeader - 4);
}

void ComputeFrameLength(std::int64_t bitrate, std::int64_t frequency, MPEGHeader &header)
{
    const std::int64_t factor = header.Layer == "Layer 1" ? 12 : 144;
    const auto bytes = Quotient(factor * bitrate * 1000, frequency);
    if (bytes)
        header.FrameLength = *bytes + (header.Padding ? 1 : 0);
}

void ComputeSeconds(std::int32_t audioBytes, std::int64_t bitrate, MPEGHeader &header)
{
    const auto milliseconds = Quotient(std::int64_t{audioBytes} * 8, bitrate);
    if (!milliseconds)
        return;
    try {
        header.Seconds = runtime::RoundToInt16(*milliseconds / 1000.0);
    } catch (const runtime::RuntimeError &) {
        return; // more than 32767 seconds: the field stays as it was
    }
}

} // namespace

std::int64_t FindHeaderPosition(std::string_view head)
{
    const std::string_view reach = head.substr(0, kLastSearchPosition + 1);
    for (std::size_t at = reach.find('\xFF'); at != std::string_view::npos;
         at = reach.find('\xFF', at + 1))
        if (at + 1 < reach.size() && (reach[at + 1] == '\xFA' || reach[at + 1] == '\xFB'))
            return static_cast<std::int64_t>(at) + 1;
    return 0;
}

std::optional<std::string_view> BitrateCell(int row, int column)
{
    if (row < 0 || row >= kRows || column < 0 || column >= kColumns)
        return std::nullopt;
    return kBitrateTable[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

void DecodeHeader(const std::array<std::uint8_t, 4> &bytes, MPEGHeader &header)
{
    const int version = Bits(bytes[1], 0x18, 3);
    const int layer = Bits(bytes[1], 0x06, 1);
    const int frequency = Bits(bytes[2], 0x0C, 2);
    header.Version = kVersions[version];
    header.Layer = kLayers[layer];
    header.CRC = Bits(bytes[1], 0x01, 0) == 0;
    header.Padding = Bits(bytes[2], 0x02, 1) != 0;
    header.ChannelMode = kChannelModes[Bits(bytes[3], 0xC0, 6)];
    header.Copyright = Bits(bytes[3], 0x08, 3) != 0;
    header.Original = Bits(bytes[3], 0x04, 2) != 0;
    header.Emphasis = kEmphases[Bits(bytes[3], 0x03, 0)];
    header.Frequency =
        header.Version == "MPEG-1" ? kMpeg1Frequencies[frequency] : kOtherFrequencies[frequency];

    const int key = (version == 3 ? 10 : 20) + 4 - layer;
    header.Bitrate = "Not defined";
    if (const auto cell = BitrateCell(key - 11, Bits(bytes[2], 0xF0, 4) - 1))
        header.Bitrate = std::string(*cell) + "kbit";
}

void ComputeLengths(bool sizeKnown, MPEGHeader &header)
{
    const auto bitrate = static_cast<std::int64_t>(runtime::LeadingNumber(header.Bitrate));
    const auto frequency = static_cast<std::int64_t>(runtime::LeadingNumber(header.Frequency));
    ComputeFrameLength(bitrate, frequency, header);
    const auto audioBytes = sizeKnown ? AudioBytes(header) : std::nullopt;
    if (!audioBytes)
        return;
    if (const auto frames = Quotient(*audioBytes, header.FrameLength))
        header.Frames = *frames;
    ComputeSeconds(*audioBytes, bitrate, header);
}

} // namespace metadata
