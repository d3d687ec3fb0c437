"""montage_numpy.py IMAGE PICTURE TYPE X Y SLICES FRAME PALETTE

The same picture with numpy and tifffile: reads a frame of a raw study, scales its maximum to the top
of the palette and writes the slices as an RGB montage of ten columns. TYPE is numpy's, as ">i2".
Reads slice by slice and writes a row of tiles at a time, so that the data stay in the cache and the
memory small.
"""

import sys

import numpy
import tifffile

COLUMNS = 10


def main(image, picture, stored_type, x, y, slices, frame, palette):
    bytes_of_slice = x * y * numpy.dtype(stored_type).itemsize
    first = (frame - 1) * slices * bytes_of_slice

    def plane(number):
        offset = first + number * bytes_of_slice
        return numpy.fromfile(image, stored_type, x * y, offset=offset).reshape(y, x)

    factor = numpy.float32(254 / float(max(plane(number).max() for number in range(slices))))
    colours = numpy.fromfile(palette, numpy.uint8, 768).reshape(3, 256).T.copy()
    shape = (-(-slices // COLUMNS) * y, COLUMNS * x, 3)
    offset, _ = tifffile.imwrite(
        picture, shape=shape, dtype=numpy.uint8, photometric="rgb", returnoffset=True
    )
    tiles = numpy.empty((y, *shape[1:]), numpy.uint8)
    with open(picture, "r+b") as file:
        file.seek(offset)
        for start in range(0, slices, COLUMNS):
            tiles[:] = colours[0]
            for column, number in enumerate(range(start, min(start + COLUMNS, slices))):
                indices = (plane(number) * factor).astype(numpy.uint8)
                tile = tiles[:, column * x : (column + 1) * x]
                colours.take(indices, axis=0, out=tile, mode="clip")
            file.write(tiles)


if __name__ == "__main__":
    words = sys.argv[1:]
    main(*words[:3], *(int(word) for word in words[3:7]), words[7])
