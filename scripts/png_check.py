"""Checks a screenshot of the fire picture: the colour map, the legend, the bars and the history.

Decodes the PNG with the standard library only (8-bit RGB or RGBA, not interlaced).
"""
import struct
import sys
import zlib


def decode(path):
    data = open(path, "rb").read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", "not a PNG file"
    pos, idat, width = 8, b"", 0
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        chunk = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", chunk)
            assert depth == 8 and colour in (2, 6) and interlace == 0, "unsupported PNG layout"
            channels = 3 if colour == 2 else 4
        elif kind == b"IDAT":
            idat += chunk
        pos += 12 + length
    raw = zlib.decompress(idat)
    stride = width * channels
    rows, prev, i = [], bytearray(stride), 0
    for _ in range(height):
        kind, line = raw[i], bytearray(raw[i + 1:i + 1 + stride])
        i += 1 + stride
        for x in range(stride):
            a = line[x - channels] if x >= channels else 0
            b = prev[x]
            c = prev[x - channels] if x >= channels else 0
            if kind == 1:
                line[x] = (line[x] + a) & 255
            elif kind == 2:
                line[x] = (line[x] + b) & 255
            elif kind == 3:
                line[x] = (line[x] + (a + b) // 2) & 255
            elif kind == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                line[x] = (line[x] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 255
        rows.append(line)
        prev = line
    return width, height, channels, rows


def main(path):
    width, height, channels, rows = decode(path)
    colours = {}
    for line in rows:
        for x in range(0, width * channels, channels):
            rgb = (line[x], line[x + 1], line[x + 2])
            colours[rgb] = colours.get(rgb, 0) + 1
    def near(target, tol=40):
        return sum(n for c, n in colours.items() if all(abs(c[k] - target[k]) <= tol for k in range(3)))
    checks = {
        # The colour map: many distinct colours over a large area.
        "colour map": len([c for c, n in colours.items() if n >= 4]) >= 40,
        # The legend's scale runs from dark blue (cold) to red and white hot.
        "legend cold end": near((26, 38, 140)) > 50,
        "legend hot colours": near((217, 38, 26)) > 50,
        # The bars: near-black markers with labels.
        "bars": near((17, 17, 17), 20) > 40,
        # The history below the field: the last bar's orange line over the others, and the
        # legend's green swatch of the third bar.
        "history lines": near((255, 127, 14), 15) > 200 and near((44, 160, 44), 15) > 40,
    }
    failed = [name for name, ok in checks.items() if not ok]
    print("picture check: %dx%d, %d colours; %s" % (width, height, len(colours),
          ", ".join("%s %s" % (n, "ok" if ok else "MISSING") for n, ok in checks.items())))
    print("%d passed, %d failed" % (len(checks) - len(failed), len(failed)))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
