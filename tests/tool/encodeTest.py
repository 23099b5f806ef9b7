"""`kalo encode tss1` gives back every record that `kalo decode` read, and rounds other values."""
import json
import unittest

from kalo import run

VALUES = {"roll": 1.05, "pitch": -1.5, "heave": -1.2, "horizontalAcceleration": 0,
          "verticalAcceleration": -0.08, "status": "U"}
LENGTHS = {"99.99": " 9999", "-99.99": "-9999", "1.0549": " 0105", "1.0551": " 0106",
           "-1.0549": "-0105", "-1.0551": "-0106", "-0.0": " 0000", "99.996": None, "-99.996": None,
           "100": None, "1e300": None, "-1e300": None}
# Key, range, first column, and what stands in the columns; None for a value that is refused.
ROWS = [
    ("roll", "-99.99 to 99.99 degrees", 14, LENGTHS),
    ("pitch", "-99.99 to 99.99 degrees", 20, LENGTHS),
    ("heave", "-99.99 to 99.99 m", 8, LENGTHS),
    ("horizontalAcceleration", "0 to 9.7665 m/s2", 1, {
        "9.7665": "FF", "0.019": "00", "0.02": "01", "0.057": "01", "0.058": "02", "-0.0": "00",
        "9.79": None, "-0.01": None, "1e300": None}),
    ("verticalAcceleration", "-20.48 to 20.479375 m/s2", 3, {
        "20.479375": "7FFF", "-20.48": "8000", "-0.000625": "FFFF", "0.0003": "0000",
        "-0.0003": "0000", "0.0004": "0001", "-0.0004": "FFFF", "0.0009": "0001", "-0.001": "FFFE",
        "-0.0": "0000", "20.48": None, "-20.480625": None, "1e300": None}),
]


class Encode(unittest.TestCase):
    maxDiff = None

    def testGivesBackWhatWasDecoded(self):
        """Every count of every column, with each status and in many combinations."""
        lines = []
        for i in range(65536):
            heave, roll, pitch = (f"{i * step % 19999 - 9999: 05d}" for step in (1, 3, 5))
            lines.append(f":{i * 7 % 256:02X}{i:04X} {heave}{'UuGgHhFf'[i % 8]}{roll} {pitch}\r\n")
        data = "".join(lines).encode()
        for options in [], ["--radians"]:
            decoded = run(["decode", "--quiet", *options], data)[1]
            self.assertTrue(run(["encode", "tss1", *options], decoded) == (0, data, ""))

    def testValues(self):
        """JSON and CSV, one value in the place of another."""
        good = b":00FF80 -0120U 0105 -0150\r\n"
        head = ",".join(VALUES)
        for key, limits, first, texts in ROWS:
            for text, columns in texts.items():
                line = json.dumps({**VALUES, key: "?"}).replace('"?"', text)
                row = ",".join(text if name == key else str(VALUES[name]) for name in VALUES)
                for data, number in (line, 1), (f"{head}\n{row}", 2):
                    if columns:
                        out = good[:first] + columns.encode() + good[first + len(columns):]
                        expected = 0, out, ""
                    else:
                        expected = 1, b"", (f"kalo: -: line {number}: {key} is out of range: "
                                            f"{text} (allowed: {limits})\n")
                    self.assertEqual(run(["encode", "tss1"], data.encode()), expected, data)


if __name__ == "__main__":
    unittest.main()
