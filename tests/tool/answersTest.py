"""What kalo summary and kalo check say of a log; the transcripts have what they print."""
import json
import unittest
import xml.etree.ElementTree

from kalo import Test, completed, run, write

DEPTH = completed(b"$SDDPT,1*hh\n")


def summary(log, *options):
    return json.loads(run(["summary", "--json", *options], log)[1])


class Answers(Test):
    def testBuildServersSeeWhatIsMissing(self):
        write("log", completed(b"$SDDPT,1*hh\n") + b"x\n")
        status, out, _ = run(["check", "--junit", "--ignore", "silence", "log", "missing"])
        suite = xml.etree.ElementTree.fromstring(out)
        marked = {case.get("name"): [mark.tag for mark in case] for case in suite if len(case)}
        self.assertEqual((status, marked), (1, {"not-a-known-record": ["failure"], "silence": ["skipped"],
                                                "inputs-are-read": ["error"]}))
        self.assertEqual([suite.get(key) for key in ("tests", "failures", "errors", "skipped")],
                         [str(len(suite)), "1", "1", "1"])

    def testLongSentencesWithoutAChecksumStayApart(self):
        for name in "GPX", "X" * 390:
            log = "".join(f"${name}{letter},{'1' * 9000}\n" for letter in "ABCDEFGHIJKLMNOPQRST").encode()
            found = [json.loads(line) for line in run(["check", "--json"], log + DEPTH)[1].splitlines()]
            self.assertEqual([(finding["kind"], finding["first"]["line"], finding["count"]) for finding in found],
                             [("missing-checksum", 1 + number, 1) for number in range(20)])

    def testFindingsHaveAMostOfGroups(self):
        log = DEPTH + "".join(f"$GP{number:05},1\n" for number in range(5000)).encode()
        found = [json.loads(line) for line in run(["check", "--json"], log)[1].splitlines()]
        self.assertEqual((len(found), sum(finding["count"] for finding in found)), (4096, 5000))

    def testSendersHaveAMost(self):
        """Those beyond it count together: by their number, and by the length of their names."""
        for prefixes, most in ([""] * 5000, 4096), ([f"{number:020000} " for number in range(300)], 210):
            log = "".join(f"{prefix}$GP{number:05},1\n" for number, prefix in enumerate(prefixes)).encode()
            senders = summary(log)["senders"]
            self.assertEqual((len(senders), senders[-1]["type"], sum(sender["count"] for sender in senders)),
                             (most, "", len(prefixes)))

    def testSatelliteSystems(self):
        """By the talker, and of GPS and of all together by the number."""
        for talker, number, system in (
                ("GP", 1, "GPS"), ("GP", 32, "GPS"), ("GP", 33, "SBAS"), ("GN", 64, "SBAS"), ("GN", 65, "GLONASS"),
                ("GN", 96, "GLONASS"), ("GN", 97, "GN"), ("GN", 119, "GN"), ("GN", 120, "SBAS"), ("GP", 158, "SBAS"),
                ("GP", 159, "GP"), ("GP", 192, "GP"), ("GP", 193, "QZSS"), ("GP", 202, "QZSS"), ("GP", 203, "GP"),
                ("GL", 1, "GLONASS"), ("GA", 1, "Galileo"), ("GB", 1, "BeiDou"), ("BD", 1, "BeiDou"),
                ("GQ", 1, "QZSS"), ("QZ", 1, "QZSS"), ("GI", 1, "NavIC"), ("XX", 1, "XX")):
            log = completed(f"${talker}GSV,1,1,01,{number},40,90,44*hh\n".encode())
            signal, = summary(log)["signals"]
            self.assertEqual(signal["system"], system, (talker, number))

    def testStreamsNearAPlace(self):
        """The nearest ten of those that say where they are."""
        stream = "STR;%s;a;RTCM 3.2;;2;GPS;x;DEU;%s;8.70;0;0;g;none;N;N;9600;\r\n"
        table = stream % ("A", "") + "".join(stream % (f"M{i}", 50 + i * 7 % 12 / 100) for i in range(12))
        near = summary((table + "ENDSOURCETABLE\r\n").encode(), "--near", "50,8.7")["sourcetable"]["near"]
        self.assertEqual([each["mountpoint"] for each in near], [f"M{i * 7 % 12}" for i in range(10)])
        for number, each in enumerate(near):
            self.assertAlmostEqual(each["distance"], number * 1111.95, delta=1)

    def testShares(self):
        """Of void records, in percent; 0 and 100 only where they are exact."""
        void, valid = (completed(b"$GPGLL,5000,N,00100,W,120000,%c*hh\n" % status) for status in b"VA")
        for count, of, text in ((0, 5, ""), (1, 2000, "<0.1 %"), (1, 1000, "0.1 %"), (1, 3, "33.3 %"),
                                (999, 1000, "99.9 %"), (1999, 2000, ">99.9 %"), (5, 5, "100 %")):
            out = run(["summary"], void * count + valid * (of - count))[1].decode()
            line = next(line for line in out.splitlines() if line.startswith("GP "))
            self.assertEqual(line.split()[2:], [str(of), *text.split()])


if __name__ == "__main__":
    unittest.main()
