"""What the columns of a log must hold, worked out from the JSON lines that the tool prints."""
import datetime
import decimal
import json
import os
import pathlib
import re
import subprocess

TOOL = os.environ["KALO_TOOL"]
SHIPPED = pathlib.Path(__file__).parents[2] / "examples/recordings/voyage.log"
INSTANT = re.compile(r"(\d{4}-\d\d-\d\d)T(\d\d):(\d\d):(\d\d(?:\.\d*)?)(Z?)")
EPOCH = datetime.datetime(1970, 1, 1, tzinfo=datetime.timezone.utc)
ANGLES = ("deg", "deg/s")
TAGS = {"s": str, "c": int, "g": str, "d": str, "n": int}


def recordings():
    """The shipped recording, and those that KALO_RECORDINGS names."""
    files = [SHIPPED]
    if folder := os.environ.get("KALO_RECORDINGS"):
        files += [path for path in pathlib.Path(folder).rglob("*")
                  if path.is_file() and path.suffix not in (".md", ".tsv")]
    return sorted(map(str, files))


def records(path, *options):
    """The JSON objects of a file by the name of their table."""
    lines = subprocess.run([TOOL, "decode", "--quiet", "--explain", *options, path], check=True,
                           capture_output=True).stdout.splitlines()
    tables = {}
    for line in lines:
        record = json.loads(line)
        name = record["type"] or ("malformed" if "error" in record else "unknown")
        tables.setdefault(name, []).append(record)
    return tables


def instant(text):
    """An instant of the output as a datetime, in whole microseconds."""
    day, hour, minute, second, _ = INSTANT.fullmatch(text).groups()
    seconds = int(hour) * 3600 + int(minute) * 60 + decimal.Decimal(second)
    microseconds = (seconds * 1000000).to_integral_value(decimal.ROUND_HALF_UP)
    return datetime.datetime.fromisoformat(day).replace(tzinfo=datetime.timezone.utc) + \
        datetime.timedelta(microseconds=int(microseconds))


def bytesOf(text):
    """The bytes that a string of the output stands for."""
    return re.sub(rb"\\(\\|x..)", lambda match: b"\\" if match[1] == b"\\" else
                  bytes.fromhex(match[1][1:].decode()), text.encode())


def tag(blocks, items):
    """The tag blocks as a column has them: the members of the object, and the text."""
    if items is None:
        return None
    found = {}
    for key, kind in TAGS.items():
        value = items.get(key)
        text = None if value in (None, "") else str(value)
        if kind is int:  # JSON has a number that is written otherwise as text
            found[key] = int(text) if re.fullmatch(r"-?\d+", text or "") else None
        else:
            found[key] = text
    return {**found, "text": blocks}


def value(column, record):
    """What the row of a record must hold in a column."""
    name = column.name
    if name == "received":
        text = record.get("received", "")
        return instant(text) if INSTANT.fullmatch(text) else None
    if name == "receivedZone":
        found = INSTANT.fullmatch(record.get("received", ""))
        return bool(found[5]) if found else None
    sent = record.get(name)
    if sent is None:
        return None
    if column.form == "instant":
        return instant(sent)
    if column.form == "date":
        try:
            return datetime.date.fromisoformat(sent)
        except ValueError:
            return None
    if column.form == "bytes":
        return bytesOf(sent)
    if name == "timeOfDay" or (column.form == "number" and isinstance(sent, str)):
        hour, minute, second = sent.split(":")
        return float(int(hour) * 3600 + int(minute) * 60) + float(second)
    return sent


def isSame(column, found, wanted):
    """Whether a value is that of the output. An angle has 15 digits there."""
    if column.form == "number" and column.unit in ANGLES and None not in (found, wanted):
        return float(f"{found:.15g}") == wanted
    if column.form == "list" and found is not None and wanted is not None:
        return len(found) == len(wanted) and all(map(isSameItem, found, wanted))
    return found == wanted and (found is None) == (wanted is None) and \
        isinstance(found, bool) == isinstance(wanted, bool)


def isSameItem(found, wanted):
    if not isinstance(wanted, dict):
        return found == wanted
    there = {key: value for key, value in found.items() if value is not None}
    return there.keys() == wanted.keys() and all(
        there[key] == wanted[key] or float(f"{there[key]:.15g}") == wanted[key] for key in wanted)


def differences(path, name, columns, rows, records):
    """The values of a table, as rows of Python objects, that are not those of the records. Yields
    None for each value that is."""
    if len(rows) != len(records):
        yield f"{path}: {name}: {len(rows)} rows, not {len(records)}"
    held = {column.name for column in columns} | {"type"}
    for row, record in zip(rows, records):
        if extra := record.keys() - held:
            yield f"{path}: {name}: no columns for {extra}"
        for column in columns:
            found = row[column.name]
            if column.name == "tag":
                wanted = tag(found and found["text"], record.get("tag"))
                isRight = found == wanted and (found is None or holds(found["text"], record["tag"]))
            else:
                wanted = value(column, record)
                isRight = isSame(column, found, wanted)
            yield None if isRight else (f"{path}:{record['line']}: {name}: {column.name}: "
                                        f"{found!r}, not {wanted!r}")


def holds(blocks, items):
    """Whether all members of the object of the tag blocks stand in their text."""
    return all(f"{key}:{text}" in blocks for key, text in items.items()
               if key not in ("checksum", "stated", "computed"))
