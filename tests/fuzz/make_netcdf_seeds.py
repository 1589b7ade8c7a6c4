"""Makes the seeds of fuzz_tersify_nc, in corpus/tersify_nc/; see that target's checks.

    make_netcdf_seeds.py [FOLDER]
"""

import struct
import sys
from pathlib import Path

UNITS, HEADER, VALUES, FILE = b"\0", b"\1", b"\2", b"\3"
CELL, BYTE, COORDINATE, TIME, CUT = b"\0", b"\4", b"\5", b"\6", b"\7"


def number(value, lowest=0):
    """As FuzzInput::between reads it."""
    return struct.pack("<H", value - lowest)


def tenths(value):
    return b"\0" + number(value, -12000)


def bits(value):
    return b"\3" + struct.pack(">f", value)


def cell(month, row, column, value):
    return CELL + number(month) + number(row) + number(column) + value


def header():
    """A dimension of records, and a variable of floats along it."""
    words = [2, 10, 1, 1, 0x76000000, 0, 0, 0, 11, 1, 1, 0x76000000, 1, 0, 0, 0, 5, 4, 100]
    return b"\1" + b"".join(struct.pack(">I", word) for word in words)


SEEDS = {
    "units-with-a-time-of-day": UNITS + number(365, -30000) + b"\1"
    + b"days since 1850-01-01T12:30:00Z",
    "units-in-hours": UNITS + number(365, -30000) + b"\0" + b"hours since 1900-1-1",
    "header-of-a-record": HEADER + b"\6" + header(),
    "values-near-and-far": VALUES + tenths(84) + tenths(-999) + b"\2" + number(84, -12000)
    + number(9, -20) + b"\2" + number(84, -12000) + number(11, -20) + bits(float("nan")),
    "file-with-values": FILE + b"\2" + cell(0, 0, 0, tenths(84)) + cell(11, 359, 719, tenths(-1)),
    "file-with-a-value-at-fault": FILE + b"\1" + cell(5, 300, 80, bits(8.43)),
    "file-with-a-coordinate-amiss": FILE + b"\1" + COORDINATE + number(719) + bits(-180.0),
    "file-that-is-cut": FILE + b"\1" + CUT + number(0),
}


def main():
    folder = Path(sys.argv[1] if len(sys.argv) > 1
                  else Path(__file__).resolve().parent / "corpus" / "tersify_nc")
    folder.mkdir(exist_ok=True)
    for name, content in SEEDS.items():
        (folder / name).write_bytes(content)


if __name__ == "__main__":
    main()
