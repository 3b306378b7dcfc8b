#pragma once

namespace tessaloom {

/// Bytes that pad a row of `Width` pixels of `Channels` bytes to a multiple of 4: 0 .. 3.
int IJL_DIB_PAD_BYTES(int Width, int Channels);

/// Bytes of `Height` padded rows; 0, and an error report, when 32 bits cannot hold them.
///
/// Rows of 65,536 bytes or more lose their high bits in the rounding, when they need any: kept, video frame
/// buffers rely on it. Never use it for the size of a bitmap that may be that wide.
int PaddedSize(int Width, int Height, int BytesPerPixel);

}  // namespace tessaloom
