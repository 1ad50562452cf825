// The PNG encoder of the screenshot verb: a signature, IHDR, one IDAT of stored (uncompressed) deflate
// blocks inside a zlib stream, and IEND.
#include "Png.h"

#include <algorithm>

namespace cli {
namespace {

uint32_t Crc32(const std::vector<uint8_t>& data, size_t from) {
    uint32_t crc = 0xFFFFFFFFu;
    for (size_t i = from; i < data.size(); ++i) {
        crc ^= data[i];
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

void PutBig32(std::vector<uint8_t>& out, uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out.push_back(static_cast<uint8_t>(v >> shift));
}

void PutChunk(std::vector<uint8_t>& out, const char* type, const std::vector<uint8_t>& data) {
    PutBig32(out, static_cast<uint32_t>(data.size()));
    std::vector<uint8_t> chunk(type, type + 4);
    chunk.insert(chunk.end(), data.begin(), data.end());
    out.insert(out.end(), chunk.begin(), chunk.end());
    PutBig32(out, Crc32(chunk, 0));
}

}  // namespace

std::vector<uint8_t> EncodePng(int width, int height, const std::vector<uint8_t>& rgbRows) {
    std::vector<uint8_t> png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    std::vector<uint8_t> header;
    PutBig32(header, static_cast<uint32_t>(width));
    PutBig32(header, static_cast<uint32_t>(height));
    header.insert(header.end(), {8, 2, 0, 0, 0});  // 8 bits, RGB
    PutChunk(png, "IHDR", header);
    std::vector<uint8_t> z = {0x78, 0x01};
    uint32_t a = 1, b = 0;
    for (size_t pos = 0; pos < rgbRows.size() || pos == 0;) {
        size_t n = std::min<size_t>(65535, rgbRows.size() - pos);
        bool last = pos + n >= rgbRows.size();
        z.push_back(last ? 1 : 0);
        z.insert(z.end(), {static_cast<uint8_t>(n), static_cast<uint8_t>(n >> 8), static_cast<uint8_t>(~n),
                           static_cast<uint8_t>(~n >> 8)});
        for (size_t i = pos; i < pos + n; ++i) {
            z.push_back(rgbRows[i]);
            a = (a + rgbRows[i]) % 65521;
            b = (b + a) % 65521;
        }
        pos += n;
        if (last)
            break;
    }
    PutBig32(z, (b << 16) | a);
    PutChunk(png, "IDAT", z);
    PutChunk(png, "IEND", {});
    return png;
}

}  // namespace cli
