"""same_picture.py PICTURE OTHER: whether two pictures are the same, but for one sample in a thousand,
which may have been rounded otherwise. Ends with status 1 where they aren't."""

import sys

import tifffile

picture, other = (tifffile.imread(name) for name in sys.argv[1:])
if picture.shape != other.shape or (picture != other).sum() > picture.size / 1000:
    sys.exit(f"{sys.argv[2]} is not the picture that {sys.argv[1]} is")
