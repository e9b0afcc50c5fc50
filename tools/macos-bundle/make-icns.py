#!/usr/bin/env python3
"""Writes the application's .icns from its SVG: each size rasterized by rsvg-convert, stored as PNG
in the ICNS container (the 'icns' header, then one typed, length-prefixed element per size).

    make-icns.py packaging/icons/orvane.svg packaging/macos/orvane.icns
"""
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

# Element types that hold PNG data, and their edge in pixels (the @2x ones at twice the point size).
ELEMENTS = [
    (b"icp4", 16), (b"ic11", 32), (b"icp5", 32), (b"ic12", 64), (b"icp6", 64),
    (b"ic07", 128), (b"ic13", 256), (b"ic08", 256), (b"ic14", 512), (b"ic09", 512), (b"ic10", 1024),
]


def rasterize(svg: Path, edge: int, folder: Path) -> bytes:
    png = folder / f"{edge}.png"
    if not png.exists():
        subprocess.run(["rsvg-convert", "-w", str(edge), "-h", str(edge), "-o", str(png), str(svg)], check=True)
    return png.read_bytes()


def main() -> int:
    if len(sys.argv) != 3:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    svg, output = Path(sys.argv[1]), Path(sys.argv[2])
    with tempfile.TemporaryDirectory() as folder:
        body = b"".join(kind + struct.pack(">I", 8 + len(data)) + data
                        for kind, data in ((kind, rasterize(svg, edge, Path(folder))) for kind, edge in ELEMENTS))
    output.write_bytes(b"icns" + struct.pack(">I", 8 + len(body)) + body)
    return 0


if __name__ == "__main__":
    sys.exit(main())
