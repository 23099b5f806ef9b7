"""Tables hold what the JSON lines hold, files of tables are written with care, and descriptions fit
what they describe."""
import ast
import csv
import io
import json
import os
import pathlib
import re
import resource
import stat
import subprocess
import time
import unittest

from kalo import ROOT, TOOL, Test, Tool, completed, run, write

VOYAGE = (ROOT / "examples/recordings/voyage.log").read_bytes()
# What the recording lacks: texts that tables must quote or escape, tag blocks, lists.
ODD = completed(
    b'\\s:r"1,c:1449331200*hh\\$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*hh\n'
    b"\\s:a\\\\b*hh\\$SDDPT,4.2*hh\n"
    b'2026-03-14T23:59:58Z "GPS, 1" $SDDPT,4.2*hh behind,"this"\n'
    b"$SDDPT,x*hh\n"
    b"=1+2\ttab \x01\xff\xc3\xa9 back\\slash \"quote\", comma\n"
    b"=1+2\n"
    b"$PABCD,a,,\xff,\tb,\\,\"*hh\n"
    b"!x,\n"
    b"$WIXDR,C,19.52,C,TempAir,P,1.02481,B,Barometer,H*hh\n"
    b"$WIXDR,C,x,C,TempAir*hh\n"
    b"$WIXDR*hh\n"
    b"$GPRTE,2,1,c,0,PBRCPK,,PTWNS,=X*hh\n"
    b"$GPTXT,01,01,02,a,b \"c\"*hh\n"
    b"$GPGSV,1,1,00*hh\n"
    b"$GPGSV,1,1,02,07,79,048,42,08,,,*hh\n"
    b"$GPGSA,A,3,19,28,,14*hh\n"
    b"$GPGSA,A,3*hh\n"
    b"14 MAR 2026 23:59:58:412 B:12 X:1.5 D:=3*00\n"
    b":004FF 0010 -0005F 0123 -0045x\n"
    b"SOURCETABLE 200 OK\nSTR;A;B \"q\";RTCM 3.1;1004(1),1005(5);2;GPS;N;DEU;54.1;12.1;0;0;s;n;B;N;9600;\n"
    b"CAS;host;2101;id;op;0;DEU;54.1;12.1;0.0.0.0;0;x;y\nNET;id;op;B;N;w;w;w;none\nENDSOURCETABLE\n")


def text(string, format):
    """A text of the JSON lines as tables have it."""
    letters = {"\t": "\\t", "\n": "\\n", "\r": "\\r"}
    return "".join(c if c >= " " or (format == "csv" and c in letters)
                   else letters.get(c, f"\\x{ord(c):02X}") for c in string)


def lines(record, members, format):
    """The lines of a table that hold a record of the JSON lines, as columns and texts. `members`
    are the keys whose values are lists of objects."""
    shared, groups = {}, [{}]
    for key, value in record.items():
        if key == "tag":
            shared[key] = value
        elif isinstance(value, bool):
            shared[key] = "true" if value else "false"
        elif isinstance(value, Number):
            shared[key] = str(value)
        elif isinstance(value, str):
            shared[key] = text(value, format)
        elif key in members:
            groups = [{f"{key}.{name}": str(part) if isinstance(part, Number)
                       else text(part, format) for name, part in member.items()}
                      for member in value] or groups
        elif all(isinstance(part, Number) for part in value):
            shared[key] = " ".join(value)
        else:
            shared[key] = text(",".join(value), format)
    for number, group in enumerate(groups):
        kept = {key: value for key, value in shared.items()
                if number == 0 or len(value) <= 256}
        yield {**kept, **group}


class Number(str):
    """A number of the JSON lines, with its digits."""


def readJson(data):
    for line in data.decode().splitlines():
        yield json.loads(line, parse_float=Number, parse_int=Number)


def readTable(data, format):
    if format == "csv":
        rows = list(csv.reader(io.StringIO(data.decode(), newline="")))
    else:
        rows = [line.split("\t") for line in data.decode().split("\n")[:-1]]
    head, *rows = rows
    for row in rows:
        assert len(row) == len(head), (head, row)
        yield dict(zip(head, row))


def tableOf(record):
    return record["type"] or ("malformed-records" if "error" in record else "untyped-records")


class Contents(Test):
    def expected(self, out, format):
        """The lines of all tables, by their names."""
        tables = {}
        for record in readJson(out):
            name = tableOf(record)
            del record["type"]
            members = {key for key, value in record.items()
                       if key == "satellites" or (isinstance(value, list) and value and
                                                  isinstance(value[0], dict))}
            tables.setdefault(name, []).extend(lines(record, members, format))
        return tables

    def testTablesHoldWhatJsonLinesHold(self):
        for options in ([], ["--raw", "--explain"], ["--epoch", "--radians"], ["--only-malformed"]):
            for format in "csv", "tsv":
                self.compare(options, format)

    def compare(self, options, format):
        write("log", VOYAGE + ODD)
        out = run(["decode", *options, "log"])[1]
        tables = self.expected(out, format)
        folder = pathlib.Path("tables", format, *options)
        status, printed, err = run(["decode", *options, "--format", format, "--output-dir",
                                    str(folder), "log"])
        self.assertEqual((status, printed), (0, b""), err)
        self.assertEqual({file.name for file in folder.iterdir() if file.is_file()},
                         {f"{name}.{format}" for name in tables})
        for name, records in tables.items():
            data = (folder / f"{name}.{format}").read_bytes()
            found = list(readTable(data, format))
            self.assertEqual(len(found), len(records), (options, name))
            for row, record in zip(found, records):
                tag = row.pop("tag", "")
                if format == "tsv":
                    tag = tag.replace("\\\\", "\\")
                tags = record.pop("tag", None)
                self.assertEqual(json.loads(tag, parse_int=Number) if tag else None, tags)
                self.assertEqual({key: value for key, value in row.items() if value != ""},
                                 {key: value for key, value in record.items() if value != ""},
                                 (options, name))
            if "records" not in name:  # one table to standard output
                status, one, err = run(["decode", *options, "--format", format, "--type", name,
                                        "log"])
                self.assertEqual((status, one), (0, data), err)

    def testMotionComesBack(self):
        motion = [line for line in VOYAGE.splitlines(True) if re.fullmatch(b":.{24}\r\n", line)]
        self.assertGreater(len(motion), 10)
        table = run(["decode", "--format", "csv", "--type", "TSS1"], b"".join(motion))[1]
        self.assertEqual(run(["encode", "tss1"], table), (0, b"".join(motion), ""))

    def testOutputStaysInProportion(self):
        # Each of 6,000 members has a line, which would repeat the prefix.
        line = completed(b"p" * 30000 + b" $WIXDR" + b",C,,," * 6000 + b"*hh\n")
        status, out, _ = run(["decode", "--format", "csv", "--raw", "--type", "XDR"], line)
        self.assertEqual((status, out.count(b"\n")), (0, 6001))
        self.assertLess(len(out), 10 * len(line))


class Files(Test):
    def decode(self, *arguments, data=completed(b"$SDDPT,1*hh\n$SDDBT,,,2,M,,*hh\nx\n")):
        return run(["decode", "--quiet", "--format", "csv", "--output-dir", *arguments], data)

    def testFolderIsMade(self):
        self.assertEqual(self.decode("a/b/c"), (0, b"", ""))
        self.assertEqual(sorted(os.listdir("a/b/c")), ["DBT.csv", "DPT.csv",
                                                       "malformed-records.csv"])

    def testWhatStandsThere(self):
        os.mkdir("out")
        write("out/DPT.csv", b"longer than what is written, " * 100)
        self.assertEqual(self.decode("out", "--columns", "depth"), (0, b"", ""))
        self.assertEqual(pathlib.Path("out/DPT.csv").read_bytes(), b"depth\r\n1\r\n")
        self.assertEqual(os.listdir("out").count("malformed-records.csv"), 0)  # has no such column
        # Anything but a regular file is left as it is, and the others are written all the same.
        os.remove("out/DPT.csv")
        for make in (os.mkfifo, os.mkdir, lambda path: os.symlink("/dev/null", path)):
            os.remove("out/DBT.csv")
            make("out/DPT.csv")
            before = os.lstat("out/DPT.csv").st_mode
            status, out, err = self.decode("out")
            self.assertEqual((status, out), (1, b""))
            self.assertRegex(err, r"^kalo: out/DPT.csv: .*\n$")
            self.assertEqual(os.lstat("out/DPT.csv").st_mode, before)
            self.assertTrue(os.path.isfile("out/DBT.csv"))
            (os.rmdir if stat.S_ISDIR(before) else os.remove)("out/DPT.csv")

    def testNoFolder(self):
        write("file", b"")
        for path in "file", "file/below":
            status, out, err = self.decode(path)
            self.assertEqual((status, out), (1, b""))
            self.assertRegex(err, rf"^kalo: {path}: .*\n$")

    def testInputIsNoOutput(self):
        data = write("DPT.csv", completed(b"$SDDPT,1*hh\n"))
        status, _, err = self.decode(".", "DPT.csv")
        self.assertEqual((status, err), (1, "kalo: ./DPT.csv: the input is also the output; write "
                                            "to another folder\n"))
        self.assertEqual(pathlib.Path(data).read_bytes(), completed(b"$SDDPT,1*hh\n"))

    def testFewFilesAreOpen(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_NOFILE, (12, 12))

        with Tool("decode", "--format", "tsv", "--output-dir", "out", write("log", VOYAGE),
                  preexec_fn=limit) as tool:
            self.assertEqual(tool.end()[0], 0)
        self.assertGreater(len(os.listdir("out")), 30)

    def testLiveAndReplaced(self):
        with Tool("decode", "--quiet", "--format", "csv", "--output-dir", "out", "--columns",
                  "depth", "-") as tool:
            tool.stdin.write(completed(b"$SDDPT,1*hh\n"))
            path = pathlib.Path("out/DPT.csv")
            self.wait(lambda: path.exists() and path.read_bytes() == b"depth\r\n1\r\n")
            tool.stdin.write(completed(b"$SDDPT,2*hh\n"))
            self.wait(lambda: path.read_bytes() == b"depth\r\n1\r\n2\r\n")
            path.rename("out/kept")
            write(path, b"other\n")
            tool.stdin.write(completed(b"$SDDPT,3*hh\n"))
            tool.stdin.close()
            tool.stdin = None
            self.assertEqual(tool.end(), (1, b"", "kalo: out/DPT.csv: another file has taken its "
                                                  "place\n"))
        self.assertEqual(path.read_bytes(), b"other\n")

    def wait(self, holds, seconds=10):
        end = time.monotonic() + seconds
        while not holds():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.01)


TYPES = {"object": dict, "array": list, "string": str, "integer": int, "number": (int, float),
         "boolean": bool, "null": type(None)}


def isOf(value, name):
    return isinstance(value, TYPES[name]) and (name == "boolean" or not isinstance(value, bool))


def mismatches(value, schema, root, place=""):
    """What JSON Schema says against a value; only the keywords that kalo prints."""
    for keyword, rule in schema.items():
        if keyword == "$ref":
            yield from mismatches(value, root["$defs"][rule.removeprefix("#/$defs/")], root, place)
        elif keyword == "anyOf":
            if not any(not list(mismatches(value, one, root)) for one in rule):
                yield f"{place}: fits none"
        elif keyword == "type":
            if not any(isOf(value, name) for name in ([rule] if isinstance(rule, str) else rule)):
                yield f"{place}: {value} is no {rule}"
                return
        elif keyword == "const" and value != rule or keyword == "enum" and value not in rule:
            yield f"{place}: {value} is not in {rule}"
        elif keyword == "pattern" and not re.search(rule, value):
            yield f"{place}: {value} is not like {rule}"
        elif keyword == "required":
            yield from (f"{place}: no {name}" for name in rule if name not in value)
        elif keyword == "items":
            for item in value:
                yield from mismatches(item, rule, root, place + "[]")
        elif keyword == "properties":
            for name in value.keys() & rule.keys():
                yield from mismatches(value[name], rule[name], root, f"{place}.{name}")
        elif keyword == "additionalProperties":
            for name in value.keys() - schema.get("properties", {}).keys():
                yield from [f"{place}: {name} is not expected"] if rule is False else \
                    mismatches(value[name], rule, root, f"{place}.{name}")
        elif keyword not in ("$schema", "$defs", "title", "description", "const", "enum",
                             "pattern"):
            yield f"unknown keyword: {keyword}"


class Descriptions(Test):
    def schema(self, *arguments):
        status, out, err = run(["schema", *arguments])
        self.assertEqual((status, err), (0, ""))
        return out.decode()

    def testSchemaFitsRecords(self):
        for options in [], ["--epoch", "--explain"], ["--radians"]:
            whole, single = json.loads(self.schema(*options)), {}
            for line in run(["decode", *options], VOYAGE + ODD)[1].splitlines():
                record = json.loads(line)
                name = tableOf(record)
                if name not in single:
                    single[name] = json.loads(self.schema("--type", name, *options))
                    self.assertEqual(list(mismatches(record, whole, whole)), [], record)
                self.assertEqual(list(mismatches(record, single[name], single[name])), [], record)
            self.assertGreater(len(single), 36)

    def testSchemaIsIndentedForPeople(self):
        for options in [], ["--type", "GGA"]:
            self.assertRegex(self.schema(*options), '^{\n  "[$a-z]')

    def testSchemaRefusesOthers(self):
        record = {"source": "-", "line": 1, "offset": 0, "type": "GSV", "satellites": [{"prn": 1}]}
        schema = json.loads(self.schema("--type", "GSV"))
        self.assertEqual(list(mismatches(record, schema, schema)), [])
        for change in ({"line": "1"}, {"line": 1.5}, {"depth": 1}, {"type": "GGA"},
                       {"type": None}, {"checksum": True}, {"time": "2026-03-14"},
                       {"satellites": {}}, {"satellites": [{"prn": 1.5}]},
                       {"satellites": [{"x": 1}]}, {"tag": {"s": 1.5}}):
            self.assertNotEqual(list(mismatches({**record, **change}, schema, schema)), [], change)
        del record["offset"]
        self.assertNotEqual(list(mismatches(record, schema, schema)), [])

    def testColumnsAreThoseOfTables(self):
        for options in [], ["--explain"], ["--columns", "time,line"]:
            for name in "GGA", "GSV", "XDR", "ATS", "STR", "SATELLITES":
                if "--columns" in options and name in ("STR", "SATELLITES"):
                    continue
                arguments = ["--format", "csv", "--type", name, *options]
                types = ast.literal_eval(self.schema("--for", "duckdb", *arguments))
                head = run(["decode", *arguments])[1].decode().splitlines()[0]
                self.assertEqual(",".join(types), head)


if __name__ == "__main__":
    unittest.main()
