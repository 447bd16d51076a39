"""Checks the plug-in's committed images: what the editor loads and what mod.io accepts as a logo.

Usage: CheckImages.py <Resources folder>. Standard library only; exits non-zero with one line per fault.
"""
import struct
import sys
import xml.etree.ElementTree as ElementTree
import zlib
from pathlib import Path

MAX_LOGO_BYTES = 8 * 1024 * 1024
# (width, height) each PNG is drawn at, and its channels per pixel (RGB 3, RGBA 4).
PNG_SIZES = {
    "Workshop_header.png": (1200, 200),
    "Modio_Banner.png": (1200, 120),
    "Icon128.png": (128, 128),
}
PNG_CHANNELS = {2: 3, 6: 4}
SVG_BADGES = ["Modio_Icon_PC.svg", "Modio_Icon_Vesko.svg"]

faults = []


def fault(name, message):
    faults.append(f"{name}: {message}")


def check_logo(path):
    """A baseline JPEG, 16:9, at least 1280x720 and under 8 MB: mod.io's rules for a logo, with room."""
    data = path.read_bytes()
    if len(data) >= MAX_LOGO_BYTES:
        fault(path.name, f"{len(data)} bytes, mod.io takes less than {MAX_LOGO_BYTES}")
    if data[:2] != b"\xff\xd8" or data[-2:] != b"\xff\xd9":
        fault(path.name, "not a complete JPEG (start or end marker missing)")
        return
    offset, frame = 2, None
    while offset + 4 <= len(data) and frame is None:
        marker, length = data[offset + 1], struct.unpack(">H", data[offset + 2:offset + 4])[0]
        if data[offset] != 0xFF:
            fault(path.name, f"no marker at byte {offset}")
            return
        if 0xC0 <= marker <= 0xCF and marker not in (0xC4, 0xC8, 0xCC):
            frame = marker, data[offset + 4:offset + 2 + length]
        elif marker == 0xDA:
            break
        offset += 2 + length
    if frame is None:
        fault(path.name, "no frame header before the scan")
        return
    marker, header = frame
    if marker != 0xC0:
        fault(path.name, f"frame SOF{marker - 0xC0}, not baseline (SOF0)")
    precision, height, width, components = struct.unpack(">BHHB", header[:6])
    if precision != 8 or components != 3:
        fault(path.name, f"{precision}-bit, {components} components; expected 8-bit colour")
    if width < 1280 or height < 720:
        fault(path.name, f"{width}x{height}, smaller than 1280x720")
    if width * 9 != height * 16:
        fault(path.name, f"{width}x{height} is not 16:9")


def check_png(path, expected):
    data = path.read_bytes()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        fault(path.name, "no PNG signature")
        return
    offset, chunks = 8, []
    while offset + 12 <= len(data):
        length, kind = struct.unpack(">I4s", data[offset:offset + 8])
        if offset + 12 + length > len(data):
            fault(path.name, f"chunk {kind!r} runs past the end of the file")
            return
        body = data[offset + 8:offset + 8 + length]
        (crc,) = struct.unpack(">I", data[offset + 8 + length:offset + 12 + length])
        if zlib.crc32(kind + body) != crc:
            fault(path.name, f"chunk {kind!r} fails its CRC")
            return
        chunks.append((kind, body))
        offset += 12 + length
    if not chunks or chunks[0][0] != b"IHDR" or chunks[-1][0] != b"IEND":
        fault(path.name, "chunks do not run from IHDR to IEND")
        return
    width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", chunks[0][1])
    if (width, height) != expected:
        fault(path.name, f"{width}x{height}, expected {expected[0]}x{expected[1]}")
    if depth != 8 or colour not in PNG_CHANNELS or interlace != 0:
        fault(path.name, f"depth {depth}, colour type {colour}, interlace {interlace}; expected 8-bit RGB or RGBA")
        return
    # The pixels decompress to one filter byte and one row per line: the file is whole.
    pixels = zlib.decompress(b"".join(body for kind, body in chunks if kind == b"IDAT"))
    if len(pixels) != height * (1 + width * PNG_CHANNELS[colour]):
        fault(path.name, f"{len(pixels)} bytes of pixels for {width}x{height}")


def check_svg(path):
    try:
        root = ElementTree.parse(path).getroot()
    except ElementTree.ParseError as error:
        fault(path.name, f"does not parse: {error}")
        return
    svg = "{http://www.w3.org/2000/svg}"
    if root.tag != svg + "svg" or not root.get("viewBox"):
        fault(path.name, "the root is not an SVG element with a viewBox")
    shapes = [e for e in root.iter() if e.tag in {svg + "path", svg + "rect", svg + "circle", svg + "polygon"}]
    if not shapes:
        fault(path.name, "draws nothing")


def main():
    folder = Path(sys.argv[1])
    expected = ["KelvorThumbnail.jpg", *PNG_SIZES, *SVG_BADGES]
    for name in expected:
        if not (folder / name).is_file():
            fault(name, f"missing from {folder}")
    if not faults:
        check_logo(folder / "KelvorThumbnail.jpg")
        for name, size in PNG_SIZES.items():
            check_png(folder / name, size)
        for name in SVG_BADGES:
            check_svg(folder / name)
    for line in faults:
        print(line, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
