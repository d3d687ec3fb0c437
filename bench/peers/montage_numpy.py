"""montage_numpy.py IMAGE PICTURE TYPE X Y SLICES FRAME PALETTE

The same picture with numpy and tifffile: reads a frame of a raw study, scales its maximum to the top
of the palette and writes the slices as an RGB montage of ten columns. TYPE is numpy's, as ">i2".
Slice by slice, so that the data stay in the cache.
"""

import sys

import numpy
import tifffile

COLUMNS = 10


def main(image, picture, stored_type, x, y, slices, frame, palette):
    size = x * y * slices
    offset = (frame - 1) * size * numpy.dtype(stored_type).itemsize
    volume = numpy.fromfile(image, stored_type, size, offset=offset).reshape(slices, y, x)
    factor = numpy.float32(254 / float(max(plane.max() for plane in volume)))
    colours = numpy.fromfile(palette, numpy.uint8, 768).reshape(3, 256).T.copy()
    montage = numpy.empty((-(-slices // COLUMNS) * y, COLUMNS * x, 3), numpy.uint8)
    montage[:] = colours[0]
    for number, plane in enumerate(volume):
        row, column = divmod(number, COLUMNS)
        tile = montage[row * y : (row + 1) * y, column * x : (column + 1) * x]
        colours.take((plane * factor).astype(numpy.uint8), axis=0, out=tile, mode="clip")
    tifffile.imwrite(picture, montage, photometric="rgb")


if __name__ == "__main__":
    words = sys.argv[1:]
    main(*words[:3], *(int(word) for word in words[3:7]), words[7])
