// PNG writing for the screenshot verb: 8-bit RGB rows stored in uncompressed deflate blocks, which every
// PNG reader accepts. Small and slow by design: a screenshot is written once per run.
#pragma once

#include <cstdint>
#include <vector>

namespace cli {

// `rgbRows` holds `height` rows, each a filter byte (0, none) followed by `width` pixels of red, green and
// blue. Returns the whole file.
std::vector<uint8_t> EncodePng(int width, int height, const std::vector<uint8_t>& rgbRows);

}  // namespace cli
