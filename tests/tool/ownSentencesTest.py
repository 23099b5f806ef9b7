"""Sentences that users describe, and what is said of mistakes in a description."""
import json
import unittest

from kalo import ROOT, Test, completed, run, write

SENTENCE = """[ECH]
meaning = "depth"
source = "manual"
values = [
    {%s},
]
"""
DEPTH = 'name = "depth", kind = "number", field = 1'


def decode(toml, line, *options):
    """The record of a line, without its place."""
    file = write("own.toml", toml.encode())
    status, out, err = run(["decode", "--quiet", "--sentences", file, *options], completed(line))
    assert (status, err) == (0, ""), err
    record = json.loads(out)
    return {key: record[key] for key in record if key not in ("source", "line", "offset", "raw")}


class OwnSentences(Test):
    def testExample(self):
        toml = (ROOT / "examples/echoSounder.toml").read_text()
        page = (ROOT / "docs/sentences.md").read_text()
        self.assertIn(f"```toml\n{toml}```", page)
        self.assertEqual(
            decode(toml, b"$PECHO,120000.50,,M,6.5,F,1487.2,A*hh\n", "--date", "2026-03-14"),
            {"type": "PECHO", "time": "2026-03-14T12:00:00.50Z", "timeOfDay": "12:00:00.50",
             "lowDepth": 6.5 * 6 * 1200 / 3937, "soundSpeed": 1487.2, "status": "A"})

    def testKinds(self):
        # What a value of each kind makes of the fields.
        for values, fields, expected in (
                ('kind = "rest"', b"a,,b", "a,,b"),
                ('kind = "texts"', b"a,,b", ["a", "", "b"]),
                ('kind = "letter"', b"AB", None),
                ('kind = "integer"', b"-7", -7),
                ('kind = "number", factor = 1000.0', b"1.5", 1500),
                ('kind = "number", after = ["EHT", "GHT"]', b"GHT-2.5", -2.5),
                ('kind = "number", after = "EHT"', b"2.5", None),
                ('kind = "angle", sign = [2, "RL"]', b"12.5,L", -12.5),
                ('kind = "angle", sign = [2, "RL"]', b"12.5,X", None),
                ('kind = "rate", factor = 0.5', b"3", 1.5),
                ('kind = "latitude"', b"4807.038,S", -48.1173),
                ('kind = "longitude"', b"4807.038,E", None),
                ('kind = "duration"', b"010203.5", 3723.5),
                ('kind = "date", order = "mmddyy"', b"080114", "2014-08-01"),
                ('kind = "date", order = "ddmmyy"', b"080114", "2014-01-08"),
                ('kind = "date", order = "ddmmyy"', b"08011", None),
                ('kind = "date", order = "ddmmyy"', b"0801x4", None)):
            with self.subTest(values):
                record = decode(SENTENCE % f'name = "x", field = 1, {values}',
                                b"$--ECH,%b*hh\n" % fields)
                self.assertEqual(record.get("x"), expected)
        parts = SENTENCE % 'name = "x", kind = "date", fields = [3, 2, 1]'
        for fields, expected in ((b"14,8,1", "2014-08-01"), (b"2014,8,1", "2014-08-01"), (b"14,8,x", None),
                                 (b"14,x,1", None), (b"x,8,1", None), (b"14,8", None)):
            with self.subTest(fields):
                self.assertEqual(decode(parts, b"$--ECH,%b*hh\n" % fields).get("x"), expected)
        pairs = SENTENCE % 'name = "x", kind = "quantity", of = "%s", pairs = [[1, 2], [3, 4]]'
        for quantity, fields, expected in (
                ("speed", b"1,N,1.852,K", 1852 / 3600), ("speed", b",N,3.6,K", 1),
                ("depth", b"2,x,3,M", 3), ("temperature", b"68,F", 20), ("pressure", b"1,B", 1e5),
                ("distance", b"2,N", 3704), ("depth", b"x,M,3,M", 3), ("depth", b"2,MM", None),
                ("depth", b"2", None)):
            with self.subTest(fields):
                record = decode(pairs % quantity, b"$--ECH,%b*hh\n" % fields)
                self.assertAlmostEqual(record.get("x"), expected)
        group = SENTENCE % ('name = "x", kind = "group", field = 2, every = 2, values = ['
                            '{name = "a", kind = "text", field = 1}, '
                            '{name = "b", kind = "integer", field = 2}]')
        self.assertEqual(decode(group, b"$--ECH,9,p,1,q*hh\n")["x"], [{"a": "p", "b": 1}, {"a": "q"}])

    def testTimes(self):
        """The first time and the first date are those of the record, unless a time is said to be another."""
        values = ('name = "a", kind = "time", field = 1%s}, {name = "b", kind = "time", field = 2}, '
                  '{name = "c", kind = "date", fields = [3, 4, 5]}, {name = "d", kind = "date", fields = [6, 7, 8]')
        for own, expected in (("", "2014-08-01T12:00:00Z"), (", own = false", "2014-08-01T13:00:00Z")):
            record = decode(SENTENCE % values % own, b"$--ECH,120000,130000,1,8,2014,2,8,2015*hh\n")
            self.assertEqual([record.get(key) for key in ("time", *"abcd")],
                             [expected, "12:00:00", "13:00:00", "2014-08-01", "2015-08-02"])

    def testPlaces(self):
        # A later file wins over an earlier one and over what comes with kalo.
        first, second = (
            write(f"{name}.toml", (SENTENCE % f'name = "{name}", kind = "text", field = 1')
                  .replace("[ECH]", "[HDG]").encode()) for name in "ab")
        words = ["decode", "--quiet", "--sentences", first, "--sentences", second, "--type", "hdg"]
        record = json.loads(run(words, completed(b"$HCHDG,7*hh\n$HCHDT,7,T*hh\n"))[1])
        self.assertEqual(record["b"], "7")
        # Forms of one address; the other forms have no names.
        forms = (SENTENCE % DEPTH).replace('meaning', 'address = "PUBX"\nsubtype = "77"\nmeaning', 1)
        forms = forms.replace("[ECH]", "[PUBX77]").replace("field = 1", "field = 2")
        self.assertEqual(decode(forms, b"$PUBX,77,5*hh\n"), {"type": "PUBX77", "depth": 5})
        self.assertIn("fields", decode(forms, b"$PUBX,78,5*hh\n"))
        # Encapsulated sentences are not looked for by three letters.
        self.assertIn("fields", decode(SENTENCE % DEPTH, b"!--ECH,5*hh\n"))

    def testToml(self):
        status, out, _ = run(["fields", "--toml", "hdg", "VHW"])
        self.assertTrue(status == 0 and out.startswith(b"[HDG]\nmeaning = ") and b"[VHW]" in out)
        own = write("own.toml", (SENTENCE % 'name = "x", kind = "rest", field = 200').encode())
        self.assertRegex(run(["fields", "--sentences", own, "ECH"])[1], rb"\b63-")
        listing = run(["fields", "HDG", "VHW"])[1]
        self.assertEqual(run(["fields", "--sentences", write("own.toml", out), "HDG", "VHW"])[1], listing)
        self.assertIn(b"HDG        heading                  deg      1 ", listing)

    def testMistakes(self):
        row = lambda text: SENTENCE % text
        for toml, message in (
                ("[ECH\n", "1: "),
                ("x = 1\n", "1: not a sentence: x"),
                (row(DEPTH).replace("[ECH]", "[ECHO]"), "1: the address must be the last three "),
                (row(DEPTH).replace("[ECH]", "[1CH]"), "1: not a sentence: 1CH"),
                (row(DEPTH).replace("[ECH]", "[E-H]"), "1: not a sentence: E-H"),
                (row(DEPTH).replace("meaning", 'address = ""\nmeaning'), "1: the address must be the last "),
                (row(DEPTH).replace("meaning", 'address = "PAB"\nx'), "1: meaning is missing"),
                (row(DEPTH).replace('"manual"', '""'), "1: source is missing"),
                (row(DEPTH).replace('"manual"', "1"), "3: source must be text"),
                (row(DEPTH).replace("[ECH]", "[GGA]"), "1: kalo decodes this type itself: GGA"),
                (row(DEPTH).replace('source = "manual"\n', ""), "1: source is missing"),
                (row(DEPTH).replace("values", "value"), "1: values are missing"),
                (row(DEPTH) + "unit = 1\n", "7: unknown key: unit"),
                (row(DEPTH + ', uni = "m"'), "5: unknown key: uni"),
                (row(DEPTH + "}, {" + DEPTH), "5: two values have the name depth"),
                (row(DEPTH.replace("number", "numbr")), "5: unknown kind: numbr (expected text, "),
                (row(DEPTH.replace("depth", "time")), "5: every record may have time; choose "),
                (row(DEPTH.replace("depth", "a b")), "5: not a name: a b"),
                (row(DEPTH.replace("= 1", "= 0")), "5: no such field: 0"),
                (row(DEPTH.replace("= 1", "= 1000")), "5: no such field: 1000"),
                (row(DEPTH.replace("= 1", '= "1"')), "5: field must be the number of a field"),
                (row(DEPTH.replace(", field = 1", "")), "5: field is missing"),
                (row(DEPTH + ", factor = 2"), "5: factor must be a number with a point"),
                *((row(DEPTH + f", sign = {sign}"), "5: a sign is a field and two letters: [3, ")
                  for sign in ('[2, "E"]', "[2]", '["2", "EW"]', "[2, 3]", '[2, "EWN"]')),
                (row(DEPTH + ', sign = [0, "EW"]'), "5: no such field: 0"),
                (row(DEPTH + ', after = [""]'), "5: after must be text, or a list of texts"),
                (row(DEPTH.replace("number", "date")), "5: order is missing"),
                (row(DEPTH).replace("values = [", "values = 1\nx = ["), "4: values must be a list"),
                (row(DEPTH).replace("{" + DEPTH + "},", ""), "1: values are missing"),
                (row(DEPTH).replace("{" + DEPTH + "}", "1"), "5: a value must be a table: {"),
                (row(DEPTH + ", after = 1"), "5: after must be text, or a list of texts"),
                (row(DEPTH.replace("number", "date") + ', order = "yy"'), "5: unknown order: yy (expected "),
                (row('name = "d", kind = "date", fields = [1, 2]'), "5: a date has three fields"),
                (row('name = "d", kind = "quantity", of = "speed"'), "5: pairs are missing"),
                (row('name = "d", kind = "quantity", of = "speed", pairs = [["1", 2]]'),
                 "5: not the number of a field"),
                (row('name = "d", kind = "quantity", of = "x", pairs = [[1, 2]]'),
                 "5: unknown quantity: x (expected speed, "),
                (row('name = "d", kind = "quantity", of = "speed", pairs = [[1]]'),
                 "5: a pair is two fields"),
                (row('name = "d", kind = "group", field = 1, every = 1, values = [{name = "e", '
                     'kind = "group", field = 1, every = 1}]'), "5: a group cannot hold another ")):
            with self.subTest(toml):
                file = write("own.toml", toml.encode())
                status, out, err = run(["decode", "--sentences", file])
                self.assertEqual((status, out), (2, b""))
                self.assertIn(f"kalo: decode: --sentences: {file}:{message}", err)


if __name__ == "__main__":
    unittest.main()
