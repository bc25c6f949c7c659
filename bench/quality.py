#!/usr/bin/python3
"""Says how near a picture comes to the truth.

    quality.py TRUTH PICTURE    prints four figures, separated by tabs
    quality.py --self-check     measures pictures whose error is known

Both pictures are TIFFs with 16 bits per channel in sRGB. The figures are the CPSNR (dB, all three channels together),
the mean and the 95th percentile of CIEDE2000, and the false colour: the mean C*ab on the chart's grey zone plate, or
"-" where the truth has none. They are taken over what both pictures show, less 8 pixels at each border: a converter
may frame the picture as it likes, and the shift between the frames is found by correlation.
"""
import os
import sys
from multiprocessing.pool import ThreadPool
from typing import NamedTuple

import numpy as np
import tifffile

BORDER = 8
BAND_ROWS = 64
WHITE = 65535


class Box(NamedTuple):
    """A rectangle of pixels; bottom and right are the first row and column beyond it."""

    top: int
    bottom: int
    left: int
    right: int

    def of(self, picture):
        return picture[self.top:self.bottom, self.left:self.right]

    def moved(self, down, right):
        return Box(self.top + down, self.bottom + down, self.left + right, self.right + right)

    def within(self, other):
        return Box(max(self.top, other.top), min(self.bottom, other.bottom),
                   max(self.left, other.left), min(self.right, other.right))

    def area(self):
        return max(0, self.bottom - self.top) * max(0, self.right - self.left)


def srgb_to_linear(encoded):
    return np.where(encoded <= 0.04045, encoded / 12.92, ((encoded + 0.055) / 1.055) ** 2.4)


LINEAR = srgb_to_linear(np.arange(WHITE + 1) / WHITE).astype(np.float32)
# IEC 61966-2-1, each row divided by its sum: white is (1, 1, 1).
XYZ_OF_SRGB = np.array([[0.4124, 0.3576, 0.1805], [0.2126, 0.7152, 0.0722], [0.0193, 0.1192, 0.9505]])
XYZ_OF_SRGB = (XYZ_OF_SRGB / XYZ_OF_SRGB.sum(axis=1, keepdims=True)).astype(np.float32)


def lab(picture):
    """L*, a* and b* of 16-bit sRGB, for the white of sRGB."""
    xyz = LINEAR[picture] @ XYZ_OF_SRGB.T
    x, y, z = np.moveaxis(np.where(xyz > (6 / 29) ** 3, np.cbrt(xyz), xyz * (29 / 6) ** 2 / 3 + 4 / 29), -1, 0)
    return 116 * y - 16, 500 * (x - y), 200 * (y - z)


def chroma(picture):
    _, a, b = lab(picture)
    return np.hypot(a, b)


def ciede2000(first, second):
    """The colour difference of two L*, a*, b* triples, as Sharma, Wu and Dalal set it out (2005); all weights are 1."""
    (l1, a1, b1), (l2, a2, b2) = first, second
    radians, full_turn = np.pi / 180, 2 * np.pi

    def rotation_weight(c):
        return np.sqrt(c ** 7 / (c ** 7 + 25.0 ** 7))

    stretch = 1.5 - 0.5 * rotation_weight((np.hypot(a1, b1) + np.hypot(a2, b2)) / 2)
    c1, c2 = np.hypot(a1 * stretch, b1), np.hypot(a2 * stretch, b2)
    h1, h2 = np.arctan2(b1, a1 * stretch) % full_turn, np.arctan2(b2, a2 * stretch) % full_turn

    is_grey = c1 * c2 == 0  # then a hue is undefined, and the other one counts
    gap = h2 - h1
    turn = np.where(is_grey, 0, np.where(gap > np.pi, gap - full_turn, np.where(gap < -np.pi, gap + full_turn, gap)))
    hue = np.where(is_grey, h1 + h2, h1 + turn / 2)

    lightness, c = (l1 + l2) / 2, (c1 + c2) / 2
    t = (1 - 0.17 * np.cos(hue - 30 * radians) + 0.24 * np.cos(2 * hue)
         + 0.32 * np.cos(3 * hue + 6 * radians) - 0.20 * np.cos(4 * hue - 63 * radians))
    off_middle = (lightness - 50) ** 2
    dl = (l2 - l1) / (1 + 0.015 * off_middle / np.sqrt(20 + off_middle))
    dc = (c2 - c1) / (1 + 0.045 * c)
    dh = 2 * np.sqrt(c1 * c2) * np.sin(turn / 2) / (1 + 0.015 * c * t)
    blueness = np.exp(-(((hue / radians) % 360 - 275) / 25) ** 2)
    rotation = -2 * rotation_weight(c) * np.sin(60 * radians * blueness)
    return np.sqrt(np.maximum(dl ** 2 + dc ** 2 + dh ** 2 + rotation * dc * dh, 0))


def find_shift(truth, picture):
    """How far down and to the right of the truth's rows and columns the picture shows the same."""
    size = min(1024, *truth.shape[:2], *picture.shape[:2])
    window = np.outer(np.hanning(size), np.hanning(size))
    corners, spectra = [], []
    for image in (truth, picture):
        corner = (np.array(image.shape[:2]) - size) // 2
        green = image[corner[0]:corner[0] + size, corner[1]:corner[1] + size, 1].astype(float)
        corners.append(corner)
        spectra.append(np.fft.rfft2((green - green.mean()) * window))
    match = np.fft.irfft2(np.conj(spectra[0]) * spectra[1], s=(size, size))
    peak = np.array(np.unravel_index(match.argmax(), match.shape))
    peak[peak > size // 2] -= size
    down, right = peak + corners[1] - corners[0]
    return int(down), int(right)


def find_grey_plate(truth):
    """The chart is four tiles wide and three high, the third one of its first row a grey zone plate. Nothing where the
    truth is not grey there."""
    height, width = truth.shape[:2]
    gap = height // 40 + 2  # the tile's frame, and the blur of its edge
    plate = Box(gap, height // 3 - gap, width // 2 + gap, width * 3 // 4 - gap)
    return plate if plate.area() and chroma(plate.of(truth)).mean() < 0.5 else None


class Figures(NamedTuple):
    cpsnr: float
    mean_ciede2000: float
    p95_ciede2000: float
    false_colour: float | None


def compare(truth, picture):
    down, right = find_shift(truth, picture)
    whole = Box(0, truth.shape[0], 0, truth.shape[1])
    shared = whole.within(Box(0, picture.shape[0], 0, picture.shape[1]).moved(-down, -right))
    if shared.area() < whole.area() / 2:
        raise ValueError("the picture does not show the scene of the truth")
    frame = Box(shared.top + BORDER, shared.bottom - BORDER, shared.left + BORDER, shared.right - BORDER)

    def compare_band(top):
        band = Box(top, top + BAND_ROWS, frame.left, frame.right).within(frame)
        ours, theirs = band.of(truth), band.moved(down, right).of(picture)
        error = (ours.astype(float) - theirs) / WHITE
        return np.square(error).sum(), ciede2000(lab(ours), lab(theirs)).astype(np.float32).ravel()

    with ThreadPool(os.cpu_count()) as pool:
        squares, differences = zip(*pool.map(compare_band, range(frame.top, frame.bottom, BAND_ROWS)))
    mean_square = sum(squares) / (3 * frame.area())
    differences = np.concatenate(differences)
    plate = find_grey_plate(truth)
    return Figures(-10 * np.log10(mean_square) if mean_square else np.inf,
                   differences.mean(dtype=float),
                   np.percentile(differences, 95),
                   chroma(plate.within(frame).moved(down, right).of(picture)).mean(dtype=float) if plate else None)


def read(path):
    picture = tifffile.imread(path)
    if picture.dtype != np.uint16 or picture.ndim != 3 or picture.shape[2] != 3:
        raise ValueError(f"{path}: not a picture of three channels with 16 bits")
    return picture


# Pairs of L*, a*, b* and their difference, of the table that Sharma, Wu and Dalal published: blue, near grey, hues
# that are opposite or lie on both sides of 0, dark and light colours.
PUBLISHED_DIFFERENCES = (
    ((50.0000, 2.6772, -79.7751), (50.0000, 0.0000, -82.7485), 2.0425),
    ((50.0000, 0.0000, 0.0000), (50.0000, -1.0000, 2.0000), 2.3669),
    ((50.0000, 2.4900, -0.0010), (50.0000, -2.4900, 0.0009), 7.1792),
    ((50.0000, 2.4900, -0.0010), (50.0000, -2.4900, 0.0011), 7.2195),
    ((50.0000, 2.5000, 0.0000), (73.0000, 25.0000, -18.0000), 27.1492),
    ((60.2574, -34.0099, 36.2677), (60.4626, -34.1751, 39.4387), 1.2644),
    ((22.7233, 20.0904, -46.6940), (23.0331, 14.9730, -42.5619), 2.0373),
    ((90.8027, -2.0831, 1.4410), (91.1528, -1.6435, 0.0447), 1.4441),
    ((2.0776, 0.0795, -1.1350), (0.9033, -0.0636, -0.5514), 0.9082),
)


def self_check():
    def expect(name, got, want, tolerance):
        if not abs(got - want) <= tolerance:
            sys.exit(f"quality.py: {name} is {got}, not {want}")

    for first, second, want in PUBLISHED_DIFFERENCES:
        expect(f"CIEDE2000 of {first} and {second}", float(ciede2000(np.array(first), np.array(second))), want, 5e-5)

    # A random pattern of L*50 and L*60 in a frame that lacks 6 rows and 4 columns; in every tenth row the two change
    # places. Their difference is 10 / (1 + 0.015 * 5^2 / sqrt(20 + 5^2)), their distance in sRGB 6589 / 65535.
    rng = np.random.default_rng(1)
    truth = np.repeat(rng.choice(np.array((30561, 37150), np.uint16), (362, 480, 1)), 3, axis=2)
    picture = truth.copy()
    picture[::10] = 30561 + 37150 - truth[::10]
    got = compare(truth, picture[6:, 4:])
    expect("CPSNR", got.cpsnr, 29.953, 0.001)
    expect("mean CIEDE2000", got.mean_ciede2000, 0.9471, 0.0005)
    expect("95th percentile of CIEDE2000", got.p95_ciede2000, 9.471, 0.005)

    # Coloured all over but for the plate. Pure red has C*ab 104.55.
    truth = (rng.integers(20000, 40000, (360, 480, 1)) * np.array((1.0, 0.9, 0.8))).astype(np.uint16)
    picture = truth.copy()
    truth[:120, 240:360] = 30000
    picture[:120, 240:360] = (WHITE, 0, 0)
    expect("false colour of a grey plate", compare(truth, truth).false_colour, 0, 0.05)
    expect("false colour of a red plate", compare(truth, picture).false_colour, 104.55, 0.05)


def main(arguments):
    if arguments == ["--self-check"]:
        self_check()
    elif len(arguments) == 2:
        print(*("-" if figure is None else f"{figure:.3f}" for figure in compare(*map(read, arguments))), sep="\t")
    else:
        sys.exit("usage: quality.py TRUTH PICTURE | --self-check")


if __name__ == "__main__":
    try:
        main(sys.argv[1:])
    except (OSError, ValueError) as error:
        sys.exit(f"quality.py: {error}")
