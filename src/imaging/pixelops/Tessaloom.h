#pragma once

#include <stdint.h>

/// The pixel operations: everything that touches single pixels.
///
/// Buffers are 24-bit bitmaps: blue, green, red; rows padded to a multiple of 4 bytes; the first row in
/// memory is the bottom row of the picture, and every Y counts rows from there. Sizes and positions are
/// pixels. Colours are 0x00BBGGRR. Every routine clips, returns 0, and does nothing for a null buffer or a
/// size below 1. None keeps state or allocates (`ColorProcess` alone takes two rows for sharpening). All
/// quotients are rounded to the nearest whole number; written as [x / n] below.
/// Vector instructions are chosen at run time; results are the same on every processor, but for `Rotate`,
/// where a component may differ by 1.
///
/// How a source pixel is laid down (`Merge`, `MergeText`, `Shadow`), for each of its three components:
///   o = [Opacity255 * map / 255]   (o = Opacity255 without a map)
///   o = [o * kept / 255]           (kept: see the table below, 255 where nothing matches)
///   mode 0       d = max(d, [s * o / 255])                 keeps the larger density (shadows of one pass)
///   mode 1       d = [d * (65025 - s * o) / 65025]         darkens by the density s (shadows onto a canvas)
///   mode 2, 3    d = [(d * (255 - o) + s * o) / 255]       blends; 3 draws nothing without a map
/// `OpacityMapPtr` is a bitmap of the source's size, read component by component, or null.
///
/// Transparent colours. With `TransparentEnabled` set and `ColourCount` above 0, the table decides and
/// `KeyColour` is ignored. The table is `ColourCount` groups of four: colour, colour, tolerance, opacity. A
/// pixel matches a group when each of its components lies between those of the two colours (in whichever
/// order they are), widened by the tolerance (0 .. 255) on both sides. A matching pixel keeps opacity / 255
/// of itself: 0 is not drawn at all. Where several groups match, the least opacity holds. Without a table, a
/// pixel equal to `KeyColour` is not drawn; 0x1000000 stands for no key colour and matches nothing.
#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define TESSALOOM_EXPORT __attribute__((visibility("default")))
#else
#define TESSALOOM_EXPORT
#endif

/// Lays the source onto the destination, its left edge at column `X`, its bottom edge at row `Y`. The two
/// reserved arguments are 0.
TESSALOOM_EXPORT int Merge(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr,
                           int SourceWidth, int SourceHeight, int X, int Y, int OpacityMode, int KeyColour,
                           int Opacity255, const uint8_t* OpacityMapPtr, int Reserved1, int Reserved2,
                           const int* ColourTablePtr, int ColourCount, int TransparentEnabled);

/// As `Merge`, but what is laid down is `TextColour`; the source is only matched against key and table, and
/// may be null. The map carries the glyph coverage; without a map (not in mode 3) the source itself does.
TESSALOOM_EXPORT int MergeText(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr,
                               int SourceWidth, int SourceHeight, int X, int Y, int OpacityMode,
                               int KeyColour, int Opacity255, const uint8_t* OpacityMapPtr, int Reserved1,
                               int Reserved2, const int* ColourTablePtr, int ColourCount,
                               int TransparentEnabled, int TextColour);

/// Fills the shadow bitmap (`W` x `H`) with the shadow of a layer: density, 0 none .. 255 full, alike in all
/// three components, on black.
///
/// The shape is the layer's coverage o, as above, the mean of its three components, with the source at column
/// `X` and row `Y`; it is then softened along rows and the rounded result along columns, with these weights
/// of a pixel, its two neighbours and theirs, in sixteenths (sizes outside 1 .. 4 count as the nearer end):
///   ShadowSize 1: 12 2 0    2: 8 4 0    3: 6 4 1    4: 4 3 3
/// W and H are 4 more than the source's size and X and Y are 2 where nothing is to be cut off.
TESSALOOM_EXPORT int Shadow(uint8_t* ShadowPtr, int W, int H, const uint8_t* SourcePtr, int SourceWidth,
                            int SourceHeight, int X, int Y, int OpacityMode, int KeyColour, int Opacity255,
                            const uint8_t* OpacityMapPtr, int ShadowSize, int Reserved1, int Reserved2,
                            const int* ColourTablePtr, int ColourCount, int TransparentEnabled);

/// Sets every pixel to `Colour`.
TESSALOOM_EXPORT int Cls(uint8_t* Ptr, int Width, int Height, int Colour);

/// Transforms the bitmap in place. Mode: 1 greyscale, 2 negative, 3 brighter, 4 darker, 5 more and 6 less
/// contrast, 7 lighter and 8 darker midtones, 9 more and 10 less saturation, 11 warmer, 12 cooler, 13
/// automatic levels, 14 sharpen, 15 red and blue exchanged; any other does nothing. The formulas:
/// ColorModes.h.
TESSALOOM_EXPORT int ColorProcess(uint8_t* Ptr, int Width, int Height, int Mode);

/// Rotates the source about its centre onto the destination, centre on centre, counter-clockwise as seen on a
/// screen (rows counted upwards).
///
/// ShearX and ShearY are -tan(angle / 2) and sin(angle) times 65536 (`RotationShears` of
/// pixelops/Rotation.h): the rotation is the product of three shears, X, Y, X. Their product is carried out
/// on positions and each pixel is sampled once, between its four neighbours, so that nothing is blurred three
/// times. Positions are rounded to 1/256 pixel for that. Quarter turns copy pixels exactly. `Angle`, whole
/// degrees, decides for a half turn, whose shear has no finite value. What the source does not cover keeps
/// the destination's present content, and its edges blend with that. The last argument is 0.
TESSALOOM_EXPORT int Rotate(uint8_t* DestPtr, int DestWidth, int DestHeight, const uint8_t* SourcePtr,
                            int SourceWidth, int SourceHeight, int Angle, int ShearX, int ShearY,
                            int Reserved);

/// Converts 16-bit pixels (5 bits each of red, green, blue from the top; rows padded to 4 bytes) to 24 bits,
/// in place: [v * 255 / 31]. The buffer must hold `Height` rows of the 24-bit result.
TESSALOOM_EXPORT int DIB1624(uint8_t* FramePtr, int Width, int Height);

/// Out = clamp(128 + current - previous) for each component; differences within +- `Threshold`, the
/// bounds included, count as none and give 128. 0 and below keeps all. `OutPtr` may be one of the other two.
TESSALOOM_EXPORT int Diff(uint8_t* OutPtr, const uint8_t* CurrentPtr, const uint8_t* PreviousPtr, int Width,
                          int Height, int Threshold);

/// Means of (2 * Level + 1) x (2 * Level + 1) pixels; beyond an edge its pixels are repeated. Height comes
/// before width. Level: 1 .. 3, above counts as 3, below copies. The two bitmaps must differ.
TESSALOOM_EXPORT int Blur(const uint8_t* SourcePtr, uint8_t* DestPtr, int Height, int Width, int Level);

/// As `Diff`, and counts what it writes: Histogram[v] becomes how many components have the value v. 256
/// entries.
TESSALOOM_EXPORT int DiffHistogram(uint8_t* OutPtr, const uint8_t* CurrentPtr, const uint8_t* PreviousPtr,
                                   int Width, int Height, int Threshold, int* Histogram);

#ifdef __cplusplus
}
#endif
