"""The program's texts and their translations in language/*.ts.

    translations.py            updates the .ts files from the sources: adds new texts, removes texts
                               that no source has any more, and fills en.ts
    translations.py --check    changes nothing; lists missing, unfinished, obsolete or broken texts;
                               the exit status is 1 if there are any

The sources are in English, so each English translation is the text itself.
"""

import argparse
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from typing import Callable, NamedTuple

ROOT = Path(__file__).resolve().parents[2]
LANGUAGE_FOLDER = ROOT / "language"
NOT_THE_PROGRAM = {"tests", "bench", "fuzz", "packaging"}

# Names and terms that Chinese software writes in Latin letters as well.
LATIN_TERMS = set("""
    Alive CSV DNS Excel HTTP HTTPD ID IP Keep MAC MIT Office PNP SIP UTF Unicode Velloran backup csv db
    devices phonebook
""".split())

# The filter of a file dialog, in Qt's syntax.
FILE_FILTER = re.compile(r"\(\*\.[^)]*\)")
PLACE_MARKER = re.compile(r"%L?\d+|%n")
TAG = re.compile(r"</?[a-z][^>]*>")
CHINESE_MNEMONIC = re.compile(r"\(&[A-Z0-9]\)(\.\.\.)?$")
HALF_WIDTH = re.compile(r"[\u3400-\u9fff][,;:?!]|[,;:?!][\u3400-\u9fff]")


def lupdate_command():
    for name in ("/usr/lib/qt5/bin/lupdate", "lupdate-qt5", "lupdate"):
        found = shutil.which(name)
        if found:
            return found
    sys.exit("lupdate was not found (Debian: qttools5-dev-tools)")


def program_folders():
    return sorted(path.parent.name for path in ROOT.glob("*/CMakeLists.txt")
                  if path.parent.name not in NOT_THE_PROGRAM)


def run_lupdate(ts_file, *options):
    """Merges the sources' texts into one .ts file; returns lupdate's complaints."""
    command = [lupdate_command(), "-silent", "-locations", "none", "-source-language", "en",
               "-target-language", LANGUAGES[ts_file.name].locale, *options]
    # A translation guessed from a similar text looks finished although it is not.
    for guess in ("sametext", "similartext", "number"):
        command += ["-disable-heuristic", guess]
    command += ["-I", str(ROOT), *program_folders(), "-ts", str(ts_file)]
    done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"lupdate failed on {ts_file.name}: {done.stderr.strip()}")
    return [line.replace(f"{ROOT}/", "") for line in done.stderr.splitlines() if line.strip()]


def read_messages(ts_file):
    """{(context, source, comment): (state, translation)}; state is None when finished."""
    messages = {}
    for context in ElementTree.parse(ts_file).getroot().iter("context"):
        name = context.findtext("name")
        for message in context.iter("message"):
            key = (name, message.findtext("source"), message.findtext("comment") or "")
            translation = message.find("translation")
            forms = [form.text or "" for form in translation.iter("numerusform")]
            messages[key] = (translation.get("type"), forms or [translation.text or ""])
    return messages


def faults_of_english(source, text):
    return [] if text == source else ["differs from the source"]


def faults_of_translation(source, text):
    faults = []
    if sorted(PLACE_MARKER.findall(text)) != sorted(PLACE_MARKER.findall(source)):
        faults.append("other place markers than the source")
    if FILE_FILTER.findall(text) != FILE_FILTER.findall(source):
        faults.append("another file filter than the source")
    if TAG.findall(text) != TAG.findall(source):
        faults.append("other markup than the source")
    return faults


def faults_of_chinese(source, text):
    faults = faults_of_translation(source, text)
    has_mnemonic = "&" in source.replace("&&", "")
    if has_mnemonic != bool(CHINESE_MNEMONIC.search(text)) or text.count("&") > 1:
        faults.append('the mnemonic must be at the end, as "(&X)", if the source has one, and missing otherwise')
    words = re.findall(r"[A-Za-z]{2,}", PLACE_MARKER.sub("", TAG.sub("", text)))
    left = [word for word in words if word not in LATIN_TERMS]
    if left:
        faults.append(f"left in English: {' '.join(left)}")
    if HALF_WIDTH.search(text):
        faults.append("half-width punctuation beside a Chinese character")
    return faults


class Language(NamedTuple):
    locale: str
    faults_of: Callable  # (source, text) -> the faults of one translation


LANGUAGES = {"en.ts": Language("en", faults_of_english),
             "zh.ts": Language("zh_CN", faults_of_chinese)}


def check_file(ts_file, scratch):
    """The faults of one .ts file, one line each."""
    present = read_messages(ts_file)
    faults_of = LANGUAGES[ts_file.name].faults_of
    fresh = scratch / ts_file.name
    shutil.copy(ts_file, fresh)
    findings = [("lupdate", complaint) for complaint in run_lupdate(fresh)]
    for key, (state, _) in read_messages(fresh).items():
        if key not in present:
            findings.append(("missing", key))
        elif state in ("vanished", "obsolete"):
            findings.append((state, key))
    for key, (state, forms) in present.items():
        if state == "unfinished" or not all(forms):
            findings.append(("unfinished", key))
        elif state is None:
            findings += [(fault, key) for form in forms for fault in faults_of(key[1], form)]
    return [f"{ts_file.name}: {what}: " +
            (key if isinstance(key, str) else f"{key[0]}: {key[1]!r}") for what, key in findings]


def check():
    findings = []
    with tempfile.TemporaryDirectory() as scratch:
        for name in LANGUAGES:
            findings += check_file(LANGUAGE_FOLDER / name, Path(scratch))
    print("\n".join(findings) or "all texts are translated")
    if findings:
        print("Update the files with scripts/translations.sh and translate the new texts.")
    return 1 if findings else 0


def fill_english(ts_file):
    text = ts_file.read_text(encoding="utf-8")
    text = re.sub(r'(<source>([^<]*)</source>(?:\s*<(extra)?comment>[^<]*</(extra)?comment>)*\s*)'
                  r'<translation[^>]*>[^<]*</translation>',
                  r"\1<translation>\2</translation>", text)
    ts_file.write_text(text, encoding="utf-8")


def update():
    for name in LANGUAGES:
        ts_file = LANGUAGE_FOLDER / name
        for complaint in run_lupdate(ts_file, "-no-obsolete"):
            print(complaint)
        if name == "en.ts":
            fill_english(ts_file)
        for (context, source, _), (state, _) in read_messages(ts_file).items():
            if state == "unfinished":
                print(f"{name}: to be translated: {context}: {source!r}")
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    return check() if parser.parse_args().check else update()


if __name__ == "__main__":
    sys.exit(main())
