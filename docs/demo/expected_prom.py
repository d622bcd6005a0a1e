#!/usr/bin/env python3
"""What the PROMs of the guided demo must hold, worked out from the limits that its windows show.

The tables below are read off the limits windows (pictures ME111-07, ME181-05, ME181-06 and wizards-09); this
script knows the memory of the mechs and nothing of the program. Its output stands in
guided-demo.vps and wizards.vps; run it again after the sample coinsets or the simulated coins have changed:

    docs/demo/expected_prom.py ME111
    docs/demo/expected_prom.py ME181
    docs/demo/expected_prom.py wizards
"""
import sys

# Per coin channel: thickness low and high, diameter low and high, material low and high.
ME111_SEGMENT_1 = [
    (897, 928, 1166, 1181, 1092, 1140),
    (960, 994, 1285, 1296, 1136, 1188),
    (1023, 1059, 1381, 1396, 1134, 1178),
    (1113, 1141, 1480, 1494, 1126, 1175),  # material high typed in
    (1165, 1204, 1557, 1574, 1740, 1807),
    (1252, 1287, 1656, 1673, 1819, 1866),
]
ME181_SEGMENT_1 = [
    (889, 921, 1218, 1231, 1143, 1190),
    (954, 980, 1334, 1354, 1181, 1233),
    (1013, 1040, 1433, 1455, 1166, 1241),
    (1095, 1120, 1540, 1558, 1193, 1237),
    (1155, 1190, 1616, 1632, 1832, 1875),
    (1229, 1264, 1719, 1737, 1911, 1957),
]
ME181_SEGMENT_2 = [
    (1334, 1365, 1858, 1878, 1534, 1587),  # thickness low typed in
    (1103, 1150, 1657, 1685, 2219, 2285),
] + [(0, 0, 0, 0, 0, 0)] * 4

NOTHING = (0, 0, 0, 0, 0, 0)
WIZARDS_SEGMENT_1 = [
    (903, 925, 1169, 1180, 1100, 1132),
    NOTHING,
    NOTHING,
    (1112, 1136, 1482, 1493, 1144, 1157),  # material high typed in
    NOTHING,
    NOTHING,
]


def segment(limits, reference, version):
    """One block of 128 nibbles: marker, three tables of six coins, edit mark, reference."""
    block = [0] * 128
    block[0] = 15
    for coin, values in enumerate(limits):
        for table, start in enumerate((1, 37, 73)):
            for which in (0, 1):
                value = values[2 * table + which]
                at = start + 6 * coin + 3 * which
                block[at:at + 3] = [value % 16, value // 16 % 16, value // 256]
    block[111] = 15  # the limits were edited by hand
    text = reference.encode().ljust(5, b"\0") + version.encode().ljust(3, b"\0")
    block[112:128] = [nibble for byte in text for nibble in (byte // 16, byte % 16)]
    return block


def coin_values():
    """The half of an ME181 segment that holds its coin values: none in these coinsets."""
    return [15] + [0] * 127


PROMS = {
    "ME111": segment(ME111_SEGMENT_1, "DOR11", "1.0") + [0] * 128,
    "ME181": coin_values() + segment(ME181_SEGMENT_1, "DOR18", "1.0")
             + coin_values() + segment(ME181_SEGMENT_2, "DOR18", "1.0"),
    "wizards": segment(WIZARDS_SEGMENT_1, "WIZ", "3") + [0] * 128,
}

cells = PROMS[sys.argv[1]]
for address in range(0, len(cells), 16):
    digits = "".join("%X" % cell for cell in cells[address:address + 16])
    print("bench expect-prom %03X %s" % (address, digits))
