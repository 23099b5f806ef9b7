"""What stands around a sentence changes nothing of it: behind every head, and with every separator,
sentences decode like those alone."""
import os
import pathlib
import re
import unittest

import records
from kalo import run

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples" / "recordings"
STAMPS = (b"2026-03-14T23:59:58.412Z", b"2026-03-14 23:59:58", b"2026/03/14 23:59:58.561",
          b"20260314T235958_012", b"2026:073:23:59:58.0656", b"14/03/2026 23:59:58",
          b"03/14/2026,23:59:58.876", b"1773532798", b"1773532798412", b"23:59:58.119")
SEPARATORS = b" ", b"\t", b",", b";", b" ; GPS1 ; ", b"] ", b" -> ", b": "
HEADS = [stamp + separator for stamp in STAMPS for separator in SEPARATORS] + [
    b"", b"GPS1 ", b"\\s:a,c:1773532798\\", b"[1773532798]", b"UdPbC\0\\s:a\\", b"\xEF\xBB\xBF"]


def sentences(path, end=rb"[ -~]*"):
    shape = re.compile(rb"[$!][A-Z][A-Z0-9]{3,}," + end)
    return [line for line in path.read_bytes().splitlines() if shape.fullmatch(line)]


def decoded(lines):
    """The records of lines, without what a head may change."""
    status, out, err = run(["decode", "--quiet"], b"".join(line + b"\r\n" for line in lines))
    assert (status, err) == (0, ""), err
    return [{key: value for key, value in record.items() if key not in
             ("source", "offset", "received", "tag", "prefix", "time", "raw")}
            for record in records.read(out)]


def recordings():
    """Those that ship with kalo, and those of real devices if the variable names their folder."""
    folders = [EXAMPLES, *map(pathlib.Path, filter(None, [os.environ.get("KALO_RECORDINGS")]))]
    return [path for folder in folders for path in sorted(folder.rglob("*")) if path.is_file()]


class Law(unittest.TestCase):
    def testHeads(self):
        """All heads in front of the lines of the voyage; each other recording gets some of them."""
        for number, path in enumerate(recordings()):
            lines = sentences(path)
            alone = decoded(lines)
            for head in HEADS if path.name == "voyage.log" else HEADS[number % 23::23]:
                with self.subTest(path=path, head=head):
                    self.assertEqual(decoded([head + line for line in lines]), alone)

    def testStamps(self):
        """Each stamp is read, whatever separates it from the sentence."""
        for stamp in STAMPS:
            for separator in SEPARATORS:
                with self.subTest(stamp=stamp, separator=separator):
                    out = run(["decode", "--quiet"], stamp + separator + b"$SDDPT,4.2*53\r\n")[1]
                    self.assertIn("received", records.read(out)[0])

    def testBareLogs(self):
        """Nothing is read into a log of sentences alone."""
        for path in recordings():
            data = b"".join(line + b"\r\n" for line in sentences(path, rb"[ -)+-~]*\*[0-9A-F]{2}"))
            for record in records.read(run(["decode", "--quiet"], data)[1]):
                self.assertFalse({"received", "tag", "prefix", "suffix"} & set(record), record)


if __name__ == "__main__":
    unittest.main()
