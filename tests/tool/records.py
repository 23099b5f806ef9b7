"""Checks records that `kalo decode --raw` printed against the input that they came from."""
import json
import re

from kalo import unescaped

# The order of the keys; any other key is a value and stands where "values" does.
KEYS = ("source line offset received tag prefix type talker time timeRule values checksum address "
        "fields error stated computed suffix raw").split()
LINE_END = re.compile(rb"\r*\n|\r")


def read(output):
    return [json.loads(line) for line in output.splitlines()]


def faults(records, data, complete=True):
    """What is wrong: each record has its keys in order and the bytes at its offset, and if all of
    them were printed, they cover each byte once but for line ends and blank lines."""
    done, line = 0, 1
    for record in records:
        places = [KEYS.index(key if key in KEYS else "values") for key in record]
        if places != sorted(places) or "type" not in record:
            yield f"keys out of order: {record}"
        if record["type"] == "SATELLITES":
            continue
        raw, offset = unescaped(record["raw"]), record["offset"]
        if not raw or data[offset:offset + len(raw)] != raw or LINE_END.search(raw):
            yield f"not the bytes of the input: {record}"
        if complete:
            gap = data[done:offset]
            line += len(LINE_END.findall(gap))
            if not isBlank((b"" if done else b"\n") + gap) or record["line"] != line:
                yield f"{gap} is in no record, or another line: {record}"
            done = offset + len(raw)
    if complete and not isBlank(data[done:] + b"\n"):
        yield f"{data[done:]} is in no record"


def isBlank(gap):
    return re.fullmatch(rb"(?:[\r\n](?:[ \t\r\n]*[\r\n])?)?", gap)
