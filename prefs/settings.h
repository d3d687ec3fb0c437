#pragma once

// The process-wide settings. They are zero at start, set once by the preference sets, in part
// overridden or set by the command line, and only read afterwards. Units are millimetres and
// pixels. Defaults and preference keys: prefs/preference_sets.cpp.

#include "prefs/norm_set.h"
#include "prefs/text.h"

#include <cstdint>

namespace velmorant
{

// The package's standard image space: dimensions, pixel sizes, level of the plane through the
// anterior and posterior commissures, and centre (derived: the middle of a slice, and z 0).
inline std::int32_t STD_Xd, STD_Yd, STD_Zd;
inline float STD_Px, STD_Py, STD_Pz;
inline float STD_Acpc;
inline float STD_X0, STD_Y0, STD_Z0;

// The package's internal image space.
inline std::int32_t INT_Xd, INT_Yd, INT_Zd;
inline float INT_Px, INT_Py, INT_Pz;
inline float INT_X0, INT_Y0, INT_Z0;
inline float INT_AcpcOffset;

// Normalisation and pixel values.
inline float INT_Global;               // what a volume's in-field maximum is scaled to
inline NormSet INT_NormSet;            // how its histogram is looked at
inline std::int16_t INT_MaxPixelValue; // largest 16-bit integer that an ECAT 6 file stores
inline float INT_OutOfFieldValue;      // what out-of-field pixels become when a volume is scaled
inline float INT_OutOfFieldCheck;      // a pixel strictly below it is out of field
inline Text FileFormat;                // image format keyword, see image/format_dispatch.h

// The generator's own settings.
inline std::int32_t NumColumn;    // slices per montage row
inline float ScaleLength;         // height of the scale bar, as a fraction of the picture's height
inline std::int32_t ScaleWidth;   // width of the scale bar
inline float MinPixel;            // pixel value at the bottom of the palette
inline Text FnPalette;            // palette file
inline std::int32_t FlagScaleBar; // 1 = draw the scale bar, 0 = none
inline std::int32_t FlagGray;     // 0 = colour, anything else = gray

// The files of the run, from the command line.
inline Text FnImage;    // image data
inline Text FnImageHdr; // image whose header is read
inline Text FnTiff;     // picture

} // namespace velmorant
