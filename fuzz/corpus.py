"""The inputs of the fuzz targets that are kept in the tree.

corpus.py start TARGET FOLDER   writes the inputs from which fuzzing starts: those that are kept,
                                and samples of the records that the target reads
corpus.py keep TARGET FOLDER    keeps the inputs of a folder in fuzz/corpus/TARGET/least.pack, the
                                smallest first, up to a limit
"""
import bz2
import gzip
import hashlib
import io
import json
import lzma
import pathlib
import re
import subprocess
import sys
import tarfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
VOYAGE = ROOT / "examples/recordings/voyage.log"
MOST_BYTES = 60000  # of the inputs of one target


def unpack(data):
    """A pack holds for each input its length in decimal digits, a line feed and its bytes."""
    while data:
        size, _, rest = data.partition(b"\n")
        yield rest[:int(size)]
        data = rest[int(size):]


def lines():
    return VOYAGE.read_bytes().splitlines(keepends=True)


def some(pattern, most=3):
    """The lines of the recording that match, a few for each text of the pattern's group."""
    counts = {}
    for line in lines():
        found = re.match(pattern, line)
        if found and counts.setdefault(found[1], 0) < most:
            counts[found[1]] += 1
            yield line


def unescaped(match):
    letter = {"r": "\r", "n": "\n", "t": "\t"}.get(match[1], match[1])
    return chr(int(letter[1:], 16)) if len(letter) == 3 else letter


def completed(text):
    """An input of a transcript, with the checksums that stand there as *hh."""
    def checksum(match):
        total = 0
        for byte in match[1].encode("latin-1", "replace"):
            total ^= byte
        return f"{match[0][0]}{match[1]}*{total:02X}"
    text = re.sub(r"\\(x..|.)", unescaped, text)
    return re.sub(r"[$!]([^$!*]*)\*hh", checksum, text).encode("latin-1", "replace")


def transcripts():
    for path in sorted((ROOT / "tests/tool/transcripts").glob("*.txt")):
        for block in re.split(r"\n(?=[$#])", path.read_text()):
            inputs = [line[2:] for line in block.splitlines() if line.startswith("< ")]
            for begin in range(0, len(inputs), 4):
                yield b"".join(completed(text) + b"\r\n" for text in inputs[begin:begin + 4])


def logs():
    data = VOYAGE.read_bytes()
    return [data[at:at + 500] for at in range(0, len(data), 2000)] + [*transcripts()]


def sentences():
    return some(rb"([$!][A-Z]+),")


def fields():
    return {field for line in some(rb"([$!][A-Z]+),", 9) for field in line.split(b"*")[0].split(b",")}


def texts():
    """Of fields, and those that no sentence of the recording has."""
    return fields() | {b"192.168.0.1", b" 10 . 0 . 0 . 255 ", b"1.2.3.256", b"1.2.3.-4", b"+1.2.3.4x",
                       b"1.2.3", b"010101", b"123519.487", b"4807.038", b"-807.038", b"48-7.038", b"W"}


def tables():
    text = VOYAGE.read_bytes()
    begin = text.index(b"SOURCETABLE")
    return [text[begin:text.index(b"\n", text.index(b"ENDSOURCETABLE")) + 1]]


def motions():
    rows = [line for line in VOYAGE.with_suffix(".jsonl").read_text().splitlines()
            if json.loads(line)["type"] == "TSS1"][:10]
    yield "\n".join(rows).encode()
    yield (b"roll,pitch,heave,horizontalAcceleration,verticalAcceleration,status\n"
           b"-1.5,0.25,-1.2,0.0383,-0.08,F\n120,0,0,0,0,F\n\"1\",2,3,4,5,u\n")


def descriptions():
    for path in (ROOT / "tools/record/sentences.toml", ROOT / "examples/echoSounder.toml"):
        yield from (text.encode() for text in re.split(r"\n(?=\[\w+\])", path.read_text())
                    if len(text) < 3000)


def piped(command, data):
    return subprocess.run(command, input=data, capture_output=True, check=True).stdout


def archives(data):
    """A log in each format that the tool unpacks, and some formats one after another."""
    files = io.BytesIO()
    with tarfile.open(fileobj=files, mode="w") as tar:
        for name, text in (("a.log", data), ("sub/b.log", b"not a record\n")):
            entry = tarfile.TarInfo(name)
            entry.size = len(text)
            tar.addfile(entry, io.BytesIO(text))
    yield files.getvalue()
    for method in (zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED):
        files = io.BytesIO()
        with zipfile.ZipFile(files, "w", method) as archive:
            archive.writestr("a.log", data)
            archive.writestr("sub/b.log", b"not a record\n")
        yield files.getvalue()
    for pack in (lambda text: gzip.compress(text, mtime=0), bz2.compress, lzma.compress,
                 lambda text: piped(["zstd", "-c"], text), lambda text: piped(["lz4", "-c"], text)):
        yield pack(data)
        yield pack(b"") + pack(data[:40]) + b"\0\0" + pack(data[40:])


def longLines():
    """Lines are read no further than 64 KiB."""
    return [*logs(), b"x" * 70000 + b"\r\n" + VOYAGE.read_bytes()[:500],
            b"2026-03-14T23:59:58Z $GPXYZ" + b",1" * 40000 + b"*00\r\n$GPHDT,1,T\r\n"]


SAMPLES = {
    "answers": logs, "pipeline": longLines, "report": logs, "splitting": longLines,
    "packed": lambda: archives(VOYAGE.read_bytes()[:1000]),
    "framing": sentences, "views": sentences,
    "gsvSet": lambda: [b"".join(list(some(rb"(\$..GSV)", 12)))] + list(some(rb"(\$..GSV)", 12)),
    "fields": texts, "numbers": fields,
    "ats": lambda: some(rb"(\d\d MAR)", 20), "tss1": lambda: some(rb"(:....)", 2),
    "sourcetable": tables, "encode": motions, "dictionary": descriptions,
}


def start(target, folder):
    inputs = [*SAMPLES.get(target, list)()]
    for path in (ROOT / "fuzz/corpus" / target).glob("*"):
        data = path.read_bytes()
        inputs += unpack(data) if path.suffix == ".pack" else [data]
    for data in inputs:
        (folder / hashlib.sha1(data).hexdigest()).write_bytes(data)


def keep(target, folder):
    inputs = sorted((path.read_bytes() for path in folder.iterdir()),
                    key=lambda data: (len(data), data))
    kept, size = [], 0
    for data in inputs:
        size += len(data)
        if size > MOST_BYTES:
            break
        kept.append(data)
    pack = ROOT / "fuzz/corpus" / target / "least.pack"
    pack.parent.mkdir(parents=True, exist_ok=True)
    pack.write_bytes(b"".join(b"%d\n%s" % (len(data), data) for data in kept))
    print(f"{target}: {len(kept)} of {len(inputs)} inputs kept")


if __name__ == "__main__":
    work, name, place = sys.argv[1:]
    {"start": start, "keep": keep}[work](name, pathlib.Path(place))
