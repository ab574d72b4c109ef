#!/usr/bin/env python3
"""Makes view/PinyinTable.cpp from the Han readings of Debian's package unicode-data.

    scripts/make-pinyin.py            writes the file
    scripts/make-pinyin.py --check    compares; the exit status is 1 if the file differs, 77 if
                                      the readings are missing or of another version
"""

import bz2
import os
import sys
import unicodedata

READINGS = "/usr/share/unicode/Unihan_Readings.txt.bz2"
VERSION = "15.0.0"
TARGET = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))),
                      "view", "PinyinTable.cpp")
PAIRS = 401
NOT_HERE = 77

# Rows that do not follow the readings. Two characters of "Nen" have another first reading, and are in
# the row of that reading as well.
FIXED = {"A": "啊阿锕", "Ha": "哈", "Nen": "嫩能枘恁"}

# The readings alone give as many syllables as the table has pairs. The appended pairs replace the
# rarest: syllables of one character that has another usual reading or spelling.
MERGED = {
    "Ei": "E",        # 诶, also spelt ê
    "Lia": "Liang",   # 俩, as in 伎俩
    "N": "En",        # 嗯, as typed on keyboards
    "Shei": "Shui",   # 谁, its more frequent reading
}

# Two characters that a fixed row leaves out, with their other reading.
OTHER_READING = {"嗄": "Sha", "蛤": "Ge"}

# The pairs after the sorted ones. The first three give the usual reading of a character for which the
# data has a rare one, or whose row is fixed. "Bia" is a spoken syllable that no dictionary has; its
# character is also in the row of its reading.
APPENDED = [("Dia", "嗲"), ("Fo", "佛"), ("Ha", "铪"), ("Bia", "髟")]
ALSO_IN_ITS_ROW = "髟"


def gb2312():
    """The characters of GB 2312, in its order."""
    codes = (bytes((row, cell)) for row in range(0xB0, 0xF8) for cell in range(0xA1, 0xFF))
    return [text for text in (code.decode("gb2312", "ignore") for code in codes) if text]


def readings():
    """The first Mandarin reading of each character, with its tone."""
    first = {}
    with bz2.open(READINGS, "rt", encoding="utf-8") as lines:
        for line in lines:
            if line.startswith("# Unicode version:") and line.split()[-1] != VERSION:
                sys.stderr.write("the readings are not of version %s\n" % VERSION)
                sys.exit(NOT_HERE)
            fields = line.rstrip("\n").split("\t")
            if len(fields) == 3 and fields[1] == "kMandarin":
                first[chr(int(fields[0][2:], 16))] = fields[2].split()[0]
    return first


def syllable(reading):
    """The reading without its tone, in ASCII as keyboards spell it: lü is "Lv", lüe "Lue"."""
    letters = unicodedata.normalize("NFD", reading.replace("üe", "ue"))
    letters = letters.replace("u\u0308", "v")
    plain = "".join(c for c in letters if not unicodedata.combining(c))
    return plain.replace("ve", "ue").capitalize()


def pairs():
    data = readings()
    moved = "".join(characters for _, characters in APPENDED)
    rows = {name: [] for name in FIXED}
    for character in gb2312():
        name = OTHER_READING.get(character) or syllable(data[character])
        name = MERGED.get(name, name)
        if character in moved and character not in ALSO_IN_ITS_ROW:
            continue
        if name in FIXED:
            if character not in FIXED[name]:
                sys.exit("%s is read %s, and that row is fixed" % (character, name))
            continue
        rows.setdefault(name, []).append(character)
    rows.update(FIXED)
    table = [(name, "".join(rows[name])) for name in sorted(rows)] + APPENDED
    if len(table) != PAIRS:
        sys.exit("%d pairs instead of %d" % (len(table), PAIRS))
    return table


def literals(characters):
    """The escapes of the characters as C++ literals, some on each line."""
    step = 13
    for start in range(0, len(characters), step):
        escapes = "".join("\\\\u%x" % ord(c) for c in characters[start:start + step])
        yield '     "%s"' % escapes


def source():
    lines = [
        "// Made by scripts/make-pinyin.py: change the script, not this file. The readings are "
        "those of",
        "// Unicode %s, copyright Unicode, Inc., under the terms of use of the Unicode data files."
        % VERSION,
        "",
        '#include "view/PinyinTable.h"',
        "",
        "// clang-format off",
        "const std::array<PinyinPair, %d> pinyinTable = {{" % (PAIRS + 1),
    ]
    for name, characters in pairs():
        lines.append('    {"%s",' % name)
        lines.append("\n".join(literals(characters)) + "},")
    lines += ['    {"end", "end"},', "}};", "// clang-format on", ""]
    return "\n".join(lines)


def main():
    if not os.path.exists(READINGS):
        sys.stderr.write("the package unicode-data is not installed\n")
        sys.exit(NOT_HERE)
    text = source()
    if "--check" not in sys.argv[1:]:
        with open(TARGET, "w", encoding="ascii", newline="\n") as file:
            file.write(text)
        return
    with open(TARGET, encoding="ascii", newline="") as file:
        if file.read() != text:
            sys.exit("view/PinyinTable.cpp is not what scripts/make-pinyin.py makes")


main()
