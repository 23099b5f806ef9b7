"""The page of the report as a file: the data in it, its policy, and that it stays small. How it looks and
answers is tested in a browser by script/browser."""
import base64
import hashlib
import json
import os
import re
import subprocess
import unittest

from kalo import ENVIRONMENT, TOOL, Test, completed, run, write


def page(*arguments, data=b""):
    status, out, err = run(["report", *arguments], data)
    assert (status, err) == (0, ""), err
    return out.decode()


def dataOf(text):
    return json.loads(re.search(r'<script type="application/json" id="data">(.*?)</script>', text,
                                re.DOTALL)[1])


def report(data, *arguments):
    return dataOf(page(*arguments, data=data))


def seriesOf(found, panel):
    """Name, times in seconds of the day, and values of each series of a plot."""
    result = {}
    for one in next(each for each in found["panels"] if each["title"] == panel)["series"]:
        time = 0
        times = []
        for step in one["times"]:
            time += step
            times.append(time / 1000 % 86400)
        sender = one["sender"]
        words = [sender["source"].strip("-"), sender["prefix"], sender["talker"], sender["type"], one["reference"]]
        result[" ".join(filter(None, words))] = list(zip(times, one["values"]))
    return result


def gapsOf(strip):
    """Their begins and ends in seconds of the day."""
    return [tuple(time / 1000 % 86400 for time in gap) for gap in strip["gaps"]]


def placesOf(found):
    """Names, frames and coordinates of the beacons."""
    return [[name, frame, round(right, 2), round(up, 2)]
            for name, frame, _, right, up in found["beacons"]["places"]]


def second(number):
    return b"%02d%02d%02d" % (number // 3600, number // 60 % 60, number % 60)


DATE = completed(b"$GPZDA,000000,14,03,2026,,*hh\n")


def joined(lines):
    return b"".join(map(completed, lines))


def headings(times, base=0, date=DATE):
    """A log with headings, each the seconds of its time and `base`, with fixes that date them."""
    lines = [b"$GPGGA,%s,1000.0,N,02000.0,E,4,08,0.9,10,M,46,M,,*hh\n$HEHDT,%d,T*hh\n"
             % (second(time), base + time % 360) for time in times]
    return date + joined(lines)


class Data(Test):
    def testValuesWithTheirTimes(self):
        found = report(headings([10, 11, 12]))
        self.assertEqual(seriesOf(found, "Course and heading"),
                         {"HE HDT": [(10, 10), (11, 11), (12, 12)]})
        self.assertEqual(seriesOf(found, "Satellites used"), {"GP GGA": [(10, 8), (11, 8), (12, 8)]})
        self.assertEqual(found["track"]["lines"],
                         [[[1773446400000 + 1000 * time, 10, 20, 4] for time in (10, 11, 12)]])

    def testAGapBreaksTheLine(self):
        times = [*range(10), *range(200, 210)]
        found = seriesOf(report(headings(times)), "Course and heading")["HE HDT"]
        self.assertEqual(found, [(time, time) for time in range(10)] + [(9, None)] +
                         [(time, time) for time in range(200, 210)])

    def testAGapBreaksTheLineOfFewValues(self):
        found = seriesOf(report(headings([1, 2, 3, 4000, 4001])), "Course and heading")["HE HDT"]
        self.assertEqual(found, [(1, 1), (2, 2), (3, 3), (3, None), (4000, 40), (4001, 41)])
        hourly = [3600 * hour for hour in range(5)]
        found = seriesOf(report(headings(hourly)), "Course and heading")["HE HDT"]
        self.assertEqual([time for time, _ in found], hourly)

    def testGapsOfALongRecordingAreKept(self):
        times = [time for time in range(1, 20000) if not 5000 <= time < 5050 and time != 9000]
        found = report(headings(times))
        senders = next(table for table in found["tables"] if table["title"] == "Senders")["rows"]
        for strip in found["presence"]["strips"]:
            if strip["sender"]["type"] == "ZDA":
                continue
            self.assertEqual(gapsOf(strip), [(4999, 5050)])
            self.assertLessEqual(len(strip["runs"]), 200)
            row = next(row for row in senders if row[3] == strip["sender"]["type"])
            self.assertEqual((str(strip["count"]), strip["rate"], strip["longestGap"]),
                             (row[4], row[5], row[8]))
            self.assertEqual(strip["longestGap"], "51.0 s")

    def testBurstsHaveNoGaps(self):
        times = [base + step for base in range(0, 1000, 60) for step in range(10)]
        found = report(headings(times))
        self.assertEqual([gapsOf(strip) for strip in found["presence"]["strips"]], [[]] * 3)

    def testStripsAreInTheOrderOfTime(self):
        found = report(headings([*range(1000, 1100), *range(500, 600), *range(2000, 2100)]))
        strip = next(each for each in found["presence"]["strips"] if each["sender"]["type"] == "HDT")
        runs = [(begin / 1000 % 86400, end / 1000 % 86400, count) for begin, end, count in strip["runs"]]
        self.assertEqual(runs, sorted(runs))
        self.assertEqual((sum(run[2] for run in runs), runs[0][0], runs[-1][1]), (300, 500, 2099))
        self.assertTrue(all(a[1] <= b[0] for a, b in zip(runs, runs[1:])), runs)
        self.assertEqual(gapsOf(strip), [(599, 1000), (1099, 2000)])

    def testWindsAreToldApart(self):
        found = report(DATE + completed(b"$WIMWV,30,R,10,M,A*hh\n$WIMWV,60,T,8,M,A*hh\n"
                                        b"$WIMWD,90,T,,M,,N,7,M*hh\n$WIMWV,1,R,99,M,V*hh\n"
                                        b"$WIVWR,20,L,,N,6,M,,K*hh\n"))
        self.assertEqual(seriesOf(found, "Wind speed"), {
            "WI MWV relative": [(0, 10)], "WI MWV true": [(0, 8)], "WI MWD": [(0, 7)],
            "WI VWR": [(0, 6)]})
        self.assertEqual(seriesOf(found, "Wind direction"), {
            "WI MWV relative, from the bow": [(0, 30)], "WI MWV true, from the bow": [(0, 60)],
            "WI MWD from north": [(0, 90)], "WI VWR from the bow": [(0, 340)]})

    def testLeastAndGreatestOfEachIntervalStay(self):
        times = range(0, 20000)
        spikes = {5000: 359, 12345: 358}
        lines = [b"$GPGGA,%s,1000.0,N,02000.0,E,4,08,0.9,10,M,46,M,,*hh\n$HEHDT,%d,T*hh\n"
                 % (second(time), spikes.get(time, 100)) for time in times]
        text = page("--max-points", "100", data=DATE + joined(lines))
        found = seriesOf(dataOf(text), "Course and heading")["HE HDT"]
        self.assertLessEqual(len(found), 100)
        self.assertGreater(len(found), 30)
        self.assertEqual([point for point in found if point[1] != 100],
                         [(5000, 359), (12345, 358)])
        self.assertEqual((found[0], found[-1]), ((0, 100), (19999, 100)))

    def testTheOutermostPositionsStay(self):
        lines = [b"$GPGGA,%s,%09.4f,N,02000.0,E,%d,08,0.9,10,M,46,M,,*hh\n"
                 % (second(time), 1000 + (30 if time == 7777 else 0), 5 if time == 3333 else 4)
                 for time in range(10000)]
        found = report(DATE + joined(lines), "--max-points", "100")["track"]
        points = [point for line in found["lines"] for point in line]
        self.assertLessEqual(len(points), 100)
        self.assertGreater(found["length"], 100)
        self.assertEqual([point[1:] for point in points if point[1] != 10], [[10.5, 20, 4]])
        self.assertEqual([point[3] for point in points if point[3] != 4], [5])

    def testATrackHasAsManyPointsAsItMay(self):
        lines = [b"$GPGGA,%s,%09.4f,N,%010.4f,E,4,08,0.9,10,M,46,M,,*hh\n"
                 % (second(time), 1000 + time / 1000, 2000 + time / 1000) for time in range(5000)]
        for most in (100, 500, 3000):
            with self.subTest(most=most):
                found = report(DATE + joined(lines), "--max-points", str(most))["track"]["lines"]
                points = [point for line in found for point in line]
                self.assertTrue(most // 4 <= len(points) <= most, len(points))
                self.assertEqual(len(found), 1)
                self.assertEqual((points[0][1], points[-1][1]), (10, round(10 + 4.999 / 60, 7)))

    def testDaysAreJoinedAndFeedsAreNot(self):
        times = range(10, 40)
        write("monday", headings(times))
        write("tuesday", headings(times, date=completed(b"$GPZDA,000000,15,03,2026,,*hh\n")))
        found = seriesOf(dataOf(page("monday", "tuesday")), "Course and heading")
        day = [(time, time) for time in times]
        self.assertEqual(found, {"HE HDT": day + [(39, None)] + day})
        write("port", headings([10, 12]))
        write("starboard", headings([11, 13], base=100))
        found = seriesOf(dataOf(page("port", "starboard")), "Course and heading")
        self.assertEqual(found, {"port HE HDT": [(10, 10), (12, 12)],
                                 "starboard HE HDT": [(11, 111), (13, 113)]})

    def testSinceAndUntil(self):
        found = report(headings(range(100)), "--since", "2026-03-14T00:00:50Z",
                       "--until", "2026-03-14T00:00:52Z")
        self.assertEqual(seriesOf(found, "Course and heading"),
                         {"HE HDT": [(50, 50), (51, 51), (52, 52)]})
        self.assertEqual(len(found["track"]["lines"][0]), 3)
        self.assertEqual(next(each["text"] for each in found["lines"] if each["head"] == "records"),
                         "6 records: 6 decoded")

    def testAPeriodWithoutRecords(self):
        data = DATE + b"\n\n" + headings([1, 2], date=b"") + completed(b"$GPGSV,2,1,05,05,40,090,44*hh\n")
        found = report(data, "--since", "2027-01-01T00:00:00Z")
        self.assertEqual((found["records"], found["isPart"], found["tables"]), (0, True, []))
        self.assertEqual(found["findings"]["groups"], [])
        self.assertEqual(next(each["text"] for each in found["lines"] if each["head"] == "records"),
                         "0 records")
        self.assertNotEqual(report(data)["findings"]["groups"], [])

    def testTheDateHintIsNotLostInAPeriod(self):
        found = report(headings([1, 2], date=b""), "--since", "2026-01-01T00:00:00Z")
        self.assertEqual((found["records"], found["undated"]), (0, 2))

    def testWithoutADateThereAreNoPlots(self):
        found = report(headings([1, 2], date=b""))
        self.assertEqual((found["panels"], found["undated"]), ([], 2))
        self.assertEqual(found["track"]["lines"], [[[None, 10, 20, 4], [None, 10, 20, 4]]])

    def testSatellitesAndBeacons(self):
        found = report(DATE + completed(
            b"$GPGSV,1,1,03,05,40,090,44,07,10,180,,09,20,270,35*hh\n$GPGSV,1,1,01,05,42,092,40*hh\n"
            b"$PSIMSSB,000001,B01,A,,C,H,M,10,20,5,1,N,,*hh\n"
            b"$PSIMSSB,000002,B01,A,,P,H,M,100,90,5,1,N,,*hh\n"
            b"$PSIMSSB,000003,B01,V,,C,H,M,10,20,5,1,N,,*hh\n"
            b"$PSIMSSB,000004,B01,A,,R,N,M,0.1,0.2,5,1,N,,*hh\n"))
        five, seven, nine = found["satellites"]
        self.assertEqual((five["system"], five["prn"], [place[1:] for place in five["way"]][-1]),
                         ("GPS", 5, [92, 42]))
        self.assertEqual(five["signal"], {"count": 2, "least": 40, "mean": 42, "greatest": 44})
        self.assertNotIn("signal", seven)
        self.assertEqual(nine["signal"], {"count": 1, "least": 35, "mean": 35, "greatest": 35})
        self.assertEqual(placesOf(found), [["B01", "bow", 10, 20], ["B01", "bow", 100, 0]])
        self.assertEqual(found["beacons"]["others"], 1, "in degrees, but where is the vessel?")

    def testManyBeaconsAreThinnedEvenly(self):
        found = report(DATE + joined(b"$PSIMSSB,%s,B01,A,,C,H,M,10,20,5,1,N,,*hh\n" % second(time)
                                     for time in range(5000)))
        times = [place[2] for place in found["beacons"]["places"]]
        self.assertEqual({later - earlier for earlier, later in zip(times, times[1:])}, {4000})
        self.assertEqual(len(times), 1250)

    def testRatesAreThoseOfTheSteps(self):
        strips = report(headings([10, 12, 14]))["presence"]["strips"]
        self.assertEqual({strip["sender"]["type"]: strip["rate"] for strip in strips},
                         {"GGA": "0.5", "HDT": "0.5", "ZDA": ""})

    def testSatellitesAreThinnedEvenly(self):
        found = report(DATE + joined(b"$GPZDA,%s,14,03,2026,,*hh\n$GPGSV,1,1,01,05,40,090,44*hh\n" % second(time)
                                     for time in range(0, 60000, 60)))
        times = [place[0] for place in found["satellites"][0]["way"]]
        self.assertTrue(60 <= len(times) <= 121, len(times))
        self.assertEqual(len({later - earlier for earlier, later in zip(times[:-1], times[1:-1])}), 1)

    def testEachBeaconStandsInItsFrame(self):
        # 0.001 of a degree is 111.195 m on a sphere, and half of that to the east at 60 degrees north.
        vessel = b"$GPGGA,000001,6000.0,N,02000.0,E,4,08,0.9,10,M,46,M,,*hh\n"
        for line, place in [
            (b"$PSIMSSB,000002,B01,A,,C,H,M,10,20,5,1,N,,*hh\n", ["B01", "bow", 10, 20]),
            (b"$PSIMSSB,000002,B01,A,,C,N,M,10,20,5,1,N,,*hh\n", ["B01", "north", 20, 10]),
            (b"$PSIMSSB,000002,B01,A,,C,E,M,10,20,5,1,N,,*hh\n", ["B01", "north", 10, 20]),
            (b"$PSIMSSB,000002,B01,A,,U,N,M,7000000,500000,5,1,N,,*hh\n", ["B01", "utm", 500000, 7000000]),
            (b"$PSIMSSB,000002,B01,A,,R,N,M,60.001,20.001,5,1,N,,*hh\n", ["B01", "north", 55.6, 111.2]),
            (b"$PSIMSSB,000059,B01,A,,R,N,M,60.001,20.001,5,1,N,,*hh\n", None),  # where is the vessel?
            (b"$PSIMLBP,000002,,R1,A,C,10,20,5,1,1,0,1*hh\n", ["R1", "localGrid", 20, 10]),
            (b"$PSIMLBP,000002,,Ve,A,E,500000,7000000,5,1,1,0,1*hh\n", ["Ve", "utm", 500000, 7000000]),
            (b"$PSIMLBP,000002,,R1,A,R,60.001,20.001,5,1,1,0,1*hh\n", ["R1", "north", 55.6, 111.2]),
            (b"14 MAR 2026 00:00:02:000 B:12 X:105.2 Y:-33.7\n", ["12", "xy", 105.2, -33.7]),
        ]:
            with self.subTest(line=line):
                found = report(DATE + completed(vessel + line))
                self.assertEqual(placesOf(found), [place] if place else [])
                self.assertEqual(found["beacons"]["others"], 0 if place else 1)


class Page(Test):
    def testThePolicyNamesTheScriptAndTheStyle(self):
        text = page(data=headings([1, 2]))
        policy = re.search('http-equiv="Content-Security-Policy" content="([^"]*)"', text)[1]
        self.assertTrue(policy.startswith("default-src 'none';"), policy)
        for element, allowed in ("script", "script-src"), ("style", "style-src"):
            content = re.search(f"<{element}>(.*?)</{element}>", text, re.DOTALL)[1]
            hash = base64.b64encode(hashlib.sha256(content.encode()).digest()).decode()
            self.assertIn(f"{allowed} 'sha256-{hash}';", policy)
        for licence in "Permission is hereby granted", "Redistributions of source code must retain":
            self.assertIn(licence, text)

    def testNoTextOfTheInputIsMarkup(self):
        data = DATE + b"</script><b> " + completed(b"$HEHDT,1,T*hh\n") + b"<!--<script>\n"
        text = page(data=data)
        self.assertEqual(text.count("</script>"), 2)
        found = dataOf(text)
        self.assertIn("/script><b", [each["sender"]["prefix"] for each in found["panels"][0]["series"]])
        self.assertIn("<!--<script>", [each["raw"] for each in found["findings"]["groups"]])

    def testLongNamesAreShortenedAndStayDistinct(self):
        long = "x" * 20000
        lines = [DATE] + [f"{long}{i} ".encode() + completed(b"$HEHDT,%d,T*hh\n" % i) for i in range(100)] * 2
        text = page(data=b"".join(lines))
        self.assertLess(len(text), 1e6)
        found = dataOf(text)
        for senders in ([each["sender"]["prefix"] for each in found["panels"][0]["series"]],
                        [each["sender"]["prefix"] for each in found["presence"]["strips"] if each["sender"]["prefix"]],
                        [row[1] for row in found["tables"][0]["rows"] if row[1]]):
            self.assertGreaterEqual(len(senders), 8)
            self.assertEqual(len(set(senders)), len(senders))
            self.assertTrue(all(len(name) <= 200 and "…" in name for name in senders), senders)

    def testNamesOutsideAsciiAreShownAsTheyAre(self):
        found = report(DATE + "Grün ".encode() + completed(b"$HEHDT,1,T*hh\n"))
        self.assertIn("Grün", [row[1] for row in found["tables"][0]["rows"]])

    def testTheCommandCanBeGivenAgain(self):
        write("a 'quoted' name", headings([1]))
        found = dataOf(page("--max-points", "100", "a 'quoted' name"))
        self.assertEqual(found["command"], r"kalo report --max-points 100 'a '\\''quoted'\\'' name'")
        self.assertEqual(found["inputs"], [{"name": "a 'quoted' name", "bytes": len(headings([1]))}])

    def testTheOutputFileIsThePage(self):
        write("log", headings([1, 2]))
        page("log", "--output", "report.html")
        self.assertEqual(sorted(os.listdir()), ["log", "report.html"])
        with open("report.html", encoding="utf-8") as file:
            found = dataOf(file.read())
        self.assertEqual(found["command"], "kalo report log --output report.html")
        self.assertEqual(found["panels"], dataOf(page("log"))["panels"])

    def testUsage(self):
        for arguments in (["--max-points", "99"], ["--max-points", "many"], ["--max-points", "1000001"],
                          ["--since", "soon"]):
            status, out, err = run(["report", *arguments])
            self.assertEqual((status, out), (2, b""), arguments)

    def testMostValuesComeFirst(self):
        """A single value is drawn only where there are no more."""
        lines = [prefix + b" $GPTHS,10,A*hh" for prefix in (b"a", b"b", b"c", b"d", b"b", b"d", b"b", b"a", b"d", b"b")]
        clock = [b"$GPZDA,0000%02d,14,03,2026,,*hh\n%s\n" % pair for pair in enumerate(lines)]
        found = report(joined(clock))
        panel, = found["panels"]
        self.assertEqual([(each["sender"]["prefix"], each["count"]) for each in panel["series"]],
                         [("b", 4), ("d", 3), ("a", 2)])
        self.assertEqual(panel["undrawn"], 1)
        self.assertEqual([(each["sender"]["prefix"], each["count"]) for each in found["presence"]["strips"]],
                         [("", 10), ("b", 4), ("d", 3), ("a", 2), ("c", 1)])
        panel, = report(joined(clock[:4]))["panels"]
        self.assertEqual([each["sender"]["prefix"] for each in panel["series"]], ["a", "b", "c", "d"])

    def testEmptyInput(self):
        found = report(b"")
        self.assertEqual((found["panels"], found["track"]["lines"], found["findings"]["groups"]),
                         ([], [], []))


class Bounds(Test):
    def testManySendersNeedBoundedMemoryAndRoom(self):
        """Prefixes, satellites, beacons, streams and faults without end."""
        def log(count):
            lines = [DATE]
            for i in range(count):
                lines.append(completed(
                    b"p%d $GPGGA,%s,1000.0,N,02000.0,E,4,08,0.9,10,M,46,M,,*hh\n"
                    b"$Z%dGSV,1,1,01,%d,40,090,44*hh\n"
                    b"$PSIMSSB,%s,B%d,A,,C,H,M,10,20,5,1,N,,*hh\n"
                    % (i, second(i % 86400), i % 10, i, second(i % 86400), i)))
                lines.append(b"STR;m%d;place;RTCM 3.2;1004(1);2;GPS;net%d;GBR;50;0;1;0;g;none;B;N;9600;x\n"
                             % (i, i))
                lines.append(b"$a%d,1*00\n" % i)
            return b"".join(lines)

        def measured(name):
            with open("page", "wb") as out:
                child = subprocess.Popen([TOOL, "report", name], stdout=out, env=ENVIRONMENT)
                _, status, usage = os.wait4(child.pid, 0)
            self.assertEqual(status, 0)
            return usage.ru_maxrss, os.path.getsize("page")

        write("some", log(6000))
        write("more", log(24000))
        memory, size = measured("some")
        memoryOfMore, sizeOfMore = measured("more")
        self.assertLess(sizeOfMore, 1.1 * size)
        self.assertLess(sizeOfMore, 5e6)
        self.assertLess(memoryOfMore, 1.2 * memory + 4000)
        with open("page", encoding="utf-8") as file:
            found = dataOf(file.read())
        self.assertEqual([(len(each["series"]), each["undrawn"]) for each in found["panels"]], [(8, 120)] * 4)
        self.assertEqual([len(found["presence"]["strips"]), len(found["satellites"])], [64, 256])
        self.assertEqual([len(table["rows"]) for table in found["tables"]], [500, 14, 1, 500, 1])

    def testSeriesHaveAMost(self):
        """512 series are kept, 8 of each plot are drawn, and the strips of 64 senders."""
        found = report(DATE + b"".join(b"p%d " % i + headings([i], date=b"") for i in range(200)))
        self.assertEqual(found["unkeptSeries"], 4 * 200 + 1 - 512)
        self.assertEqual([each["undrawn"] for each in found["panels"]], [0, 119, 120, 120, 120])
        self.assertEqual((len(found["presence"]["strips"]), found["presence"]["undrawn"]), (64, 202 - 64))

    def testFindingsHaveAMost(self):
        found = report(DATE + b"".join(b"$GP%05d,1\n" % number for number in range(600)))["findings"]
        self.assertEqual((len(found["groups"]), found["undrawn"]), (500, 100))


if __name__ == "__main__":
    unittest.main()
